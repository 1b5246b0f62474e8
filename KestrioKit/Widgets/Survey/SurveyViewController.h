#pragma once

#include "KestrioKit/SurveySession.h"
#include "KestrioKit/Widgets/Overlay/KeyboardObserver.h"
#include "KestrioKit/Widgets/Overlay/ModalOverlay.h"
#include "KestrioKit/Widgets/Survey/SurveyView.h"

#include <memory>

namespace KestrioKit {

class Animation;
class BackgroundView;

/// A survey on screen: dims a window, and slides a card in over it. Keys and taps count from the
/// end of that entry on. The session ends with the survey: when the visitor finishes or closes it,
/// or when the window goes. For the main thread.
class SurveyViewController final : public ModalOverlay {
    Q_OBJECT

public:
    /// `clock` must outlive the controller.
    SurveyViewController(std::unique_ptr<SurveySession> session, const Clock &clock);
    ~SurveyViewController() override;

    /// The one that is on screen; null when none is.
    static SurveyViewController *presented();

    /// Comes up over the window of `from`, which must be shown, and belongs to that window from
    /// now on. Deletes itself when it has gone. To be called once.
    void present(QWidget *from);

    /// Finishes the session and goes. Animated, after the entry: nothing more when it is going
    /// already. Not animated: immediately, whatever is under way.
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

    /// Null once the survey has gone.
    std::unique_ptr<SurveySession> m_session;
    KeyboardObserver m_keyboardObserver;
    BackgroundView *m_backgroundView;
    SurveyView *m_surveyView;
    /// Where the card is on its way from below the window, 0, to its place, 1.
    qreal m_cardPosition = 0;
    /// By how much the keyboard has lifted it.
    qreal m_keyboardOffset = 0;
    QPointer<Animation> m_keyboardAnimation;
    /// Whether the window has not shown the question on the card yet.
    bool m_isUnseen = false;
    /// From the end of the entry on.
    bool m_isAnswerable = false;
    bool m_isDismissing = false;
};

} // namespace KestrioKit
