#pragma once

#include "KestrioKit/Core/Session/KeyboardObserver.h"
#include "KestrioKit/Core/Session/SurveyFlow.h"
#include "KestrioKit/Widgets/Overlay/ModalOverlay.h"
#include "KestrioKit/Widgets/Survey/SurveyView.h"

#include <memory>

namespace KestrioKit {

class BackgroundView;

/// Shows a survey over a host window: it dims the window and slides a card in. Keys and taps are
/// ignored until this entry animation has ended. The session ends when the visitor finishes or
/// closes the survey, or when the window is closed. Use it on the main thread only.
class SurveyViewController final : public ModalOverlay {
    Q_OBJECT

public:
    /// `clock` must outlive the controller.
    SurveyViewController(std::unique_ptr<SurveySession> session, const Clock &clock);
    /// Closes the session if the survey is still on screen.
    ~SurveyViewController() override;

    /// Returns the controller that is on screen, or null if there is none.
    static SurveyViewController *presented();

    /// Presents the survey over the window of `from`, which must be visible. The window then owns
    /// the controller. The controller deletes itself after it is dismissed. Call this only once.
    void present(QWidget *from);

    /// Finishes the session and removes the survey from the window. With `animated` it is ignored
    /// if a dismissal has already begun. Without `animated` the survey disappears immediately, even
    /// during another animation.
    void dismiss(bool animated) { m_flow.dismiss(animated); }

protected:
    void layOut() override;
    void keyPressed(const QKeyEvent &event) override;
    void windowGone() override;
    void visibilityChanged() override;
    void focusMoved(QWidget *view) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void loadView();
    void follow();
    void entryEnded();
    void keyboardChanged();
    int bottomOffset() const;
    void leave();
    void end();

    SurveyFlow m_flow;
    KeyboardObserver m_keyboardObserver;
    BackgroundView *m_backgroundView;
    SurveyView *m_surveyView;
};

} // namespace KestrioKit
