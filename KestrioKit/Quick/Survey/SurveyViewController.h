#pragma once

#include "KestrioKit/Core/Session/KeyboardObserver.h"
#include "KestrioKit/Core/Session/SurveyFlow.h"
#include "KestrioKit/Quick/Controls/ScreenStyle.h"
#include "KestrioKit/Quick/Overlay/ModalOverlay.h"

namespace KestrioKit::Quick {

/// Shows a survey over a window or in an item: it dims the area and slides a card in. Use it on the
/// main thread only.
class SurveyViewController final : public ModalOverlay {
    Q_OBJECT
    Q_PROPERTY(bool still READ isStill)

public:
    /// `clock` must outlive the controller.
    SurveyViewController(std::unique_ptr<SurveySession> session, const Clock &clock);
    /// Closes the session if the survey is still on screen.
    ~SurveyViewController() override;

    /// Presents the survey over `area`, an item of a visible window. The controller deletes itself
    /// after it is dismissed, or when the area is destroyed. Call this only once.
    void present(QQuickItem *area);

    /// Returns whether nothing of the survey is being animated.
    bool isStill() const;

protected:
    void layOut() override;
    void windowGone() override;
    void visibilityChanged() override;
    void focusMoved(QQuickItem *item) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QQuickItem *create(const QString &screen);
    void noteFocus();
    void beginPage();
    void keyboardChanged();
    void reveal(const QQuickItem &item);
    void scrollTo(qreal offset);
    void scroll(int key);
    void leave();
    void end();

    KeyboardObserver m_keyboardObserver;
    ScreenStyle m_style;
    SurveyFlow m_flow;
    QQuickItem *m_backgroundView;
    QQuickItem *m_surveyView;
    /// Decides whether the first control of the next page draws its focus ring.
    Qt::FocusReason m_focusReason = Qt::OtherFocusReason;
    /// Whether `beginPage()` is moving the focus, which must not scroll the page.
    bool m_isBeginningPage = false;
};

} // namespace KestrioKit::Quick
