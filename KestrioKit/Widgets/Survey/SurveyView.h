#pragma once

#include "KestrioKit/Core/Platform/Threads/Clock.h"
#include "KestrioKit/SurveySession.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

#include <QPointer>
#include <QWidget>

namespace KestrioKit {

class CloseButton;
class PageControl;
class ScrollIndicator;
class ScrollView;

/// The survey's card. It shows one page at a time, a dot for each question and a close button. When
/// the session is complete, it shows the thank-you page. Use it on the main thread only.
class SurveyView final : public QWidget {
    Q_OBJECT

public:
    /// The session may be destroyed before the card. The card then ignores further answers. `clock`
    /// must outlive the card.
    SurveyView(SurveySession &session, const Clock &clock);

    /// Returns whether the card shows the thank-you page. That page has no close button.
    bool isFinished() const { return m_isFinished; }

    /// Returns the y coordinate at which the visible part of the page ends, in the card's
    /// coordinates and in device-independent pixels.
    int pageBottom() const;

    /// Makes a screen reader announce the page and moves the focus to the page's first control. If
    /// the page has no control, the page itself receives the focus. `reason` decides whether the
    /// control draws its focus ring.
    void beginPage(Qt::FocusReason reason);

    /// Scrolls the page until `view` is visible. Ignored if `view` is not on the page.
    void reveal(const QWidget *view);
    /// Scrolls the page by the step that belongs to `key`, a `Qt::Key`. Other keys do nothing.
    void scroll(int key);

    /// Returns the height at which the page fits without scrolling. During a page transition the
    /// height lies between those of the old and the new page.
    int heightForWidth(int width) const override;
    bool hasHeightForWidth() const override { return true; }

Q_SIGNALS:
    /// Emitted when the result of `heightForWidth()` has changed.
    void heightChanged();
    /// Emitted when the card has switched to the page of another question. Not emitted for the
    /// first question.
    void questionPresented();
    /// Emitted when the thank-you page has replaced the last question.
    void finished();
    /// Emitted when the visitor clicks the close button.
    void closeTapped();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QWidget *makeQuestionView();
    void setupNewQuestionView();
    void answer(const QVariant &value);
    void transitionToQuestion();
    void replaceQuestionView();
    void growToQuestionView(int previousHeight);
    void showQuestionView();
    void appearanceChanged();
    void layOut();

    QPointer<SurveySession> m_session;
    const Clock &m_clock;
    SurveyColors m_colors;
    ScrollView *m_questionContainerView;
    ScrollIndicator *m_scrollIndicator;
    PageControl *m_pageControl;
    CloseButton *m_closeButton;
    /// The page on the card: a `QuestionView` or the `FinishSurveyView`.
    QWidget *m_currentQuestionView = nullptr;
    /// Index of the question on screen. While its page fades out, the session is already at the
    /// next question.
    int m_presentedIndex = 0;
    bool m_isFinished = false;
    /// Whether the current page is fading out.
    bool m_isLeavingPage = false;
    /// Whether `beginPage()` is moving the focus, which must not scroll the page.
    bool m_isBeginningPage = false;
    /// Whether the control that answered last showed its focus ring. The next page follows it.
    bool m_focusIsVisible = false;
    /// Height of the page container before the transition, in device-independent pixels.
    int m_previousHeight = 0;
    /// Progress from the previous height (0) to the height of the current page (1).
    qreal m_growth = 1;
};

} // namespace KestrioKit
