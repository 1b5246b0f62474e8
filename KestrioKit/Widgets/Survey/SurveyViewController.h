#pragma once

#include "KestrioKit/Core/Session/KeyboardObserver.h"
#include "KestrioKit/SurveySession.h"
#include "KestrioKit/Widgets/Overlay/ModalOverlay.h"
#include "KestrioKit/Widgets/Survey/SurveyView.h"

#include <memory>

namespace KestrioKit {

class Animation;
class BackgroundView;

/// Shows a survey over a host window: it dims the window and slides a card in. Keys and taps are
/// ignored until this entry animation has ended. The session ends when the visitor finishes or
/// closes the survey, or when the window is closed. Use it on the main thread only.
class SurveyViewController final : public ModalOverlay {
    Q_OBJECT

public:
    /// The controller owns `session`. `clock` must outlive the controller.
    SurveyViewController(std::unique_ptr<SurveySession> session, const Clock &clock);
    /// Closes the session if the survey is still on screen.
    ~SurveyViewController() override;

    /// Returns the controller that is on screen, or null if there is none.
    static SurveyViewController *presented();

    /// Presents the survey over the window of `from`, which must be visible. The window then owns
    /// the controller. The controller deletes itself after it is dismissed. Call this only once.
    void present(QWidget *from);

    /// Finishes the session and removes the survey from the window. Call it with `animated` only
    /// after the entry animation; it is then ignored if a dismissal has already begun. Without
    /// `animated` the survey disappears immediately, even during another animation.
    void dismiss(bool animated);

protected:
    void layOut() override;
    void keyPressed(const QKeyEvent &event) override;
    void windowGone() override;
    void visibilityChanged() override;
    void focusMoved(QWidget *view) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void loadView();
    void setAnswerable(bool isAnswerable);
    void animateEntry();
    void springIn();
    void entryEnded();
    void questionPresented();
    void userInitiatedClose();
    void keyboardChanged();
    int bottomOffset() const;
    void slideCardOut();
    void dissolve();
    void end();

    /// Null after the survey has ended.
    std::unique_ptr<SurveySession> m_session;
    KeyboardObserver m_keyboardObserver;
    BackgroundView *m_backgroundView;
    SurveyView *m_surveyView;
    /// Progress of the card from below the window (0) to its final position (1).
    qreal m_cardPosition = 0;
    /// How far the card is raised above the on-screen keyboard, in device-independent pixels.
    qreal m_keyboardOffset = 0;
    QPointer<Animation> m_keyboardAnimation;
    /// Whether the current question has not been visible in the window yet.
    bool m_isUnseen = false;
    /// Whether the entry animation has ended, so that input is accepted.
    bool m_isAnswerable = false;
    /// Whether `dismiss()` has been called.
    bool m_isDismissing = false;
};

} // namespace KestrioKit
