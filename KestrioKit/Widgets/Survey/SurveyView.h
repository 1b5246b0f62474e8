#pragma once

#include "KestrioKit/Core/Platform/Threads/Clock.h"
#include "KestrioKit/Core/Session/SurveyFlow.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

#include <QWidget>

namespace KestrioKit {

class CloseButton;
class PageControl;
class ScrollIndicator;
class ScrollView;

/// The survey's card. It shows the page of a `SurveyFlow`, a dot for each question and a close
/// button. Use it on the main thread only.
class SurveyView final : public QWidget {
    Q_OBJECT

public:
    /// The survey of `flow` must not have ended. The card's owner may destroy `flow` first if it
    /// then destroys the card immediately. `clock` must outlive the card.
    SurveyView(SurveyFlow &flow, const Clock &clock);

    /// Returns whether the card shows the thank-you page. That page has no close button.
    bool isFinished() const { return m_flow.isFinished(); }

    /// Returns the y coordinate at which the visible part of the page ends, in the card's
    /// coordinates and in device-independent pixels.
    int pageBottom() const;

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

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void follow();
    QWidget *makeQuestionView();
    void setupNewQuestionView();
    void answer(const QVariant &value);
    void removeQuestionView();
    void replaceQuestionView();
    void beginPage();
    void updateEnabled();
    void changeAppearance(const SurveyPalette &palette);
    void layOut();

    SurveyFlow &m_flow;
    const Clock &m_clock;
    SurveyColors m_colors;
    ScrollView *m_questionContainerView;
    ScrollIndicator *m_scrollIndicator;
    PageControl *m_pageControl;
    CloseButton *m_closeButton;
    /// The page on the card: a `QuestionView` or the `FinishSurveyView`.
    QWidget *m_currentQuestionView = nullptr;
    /// Whether `beginPage()` is moving the focus, which must not scroll the page.
    bool m_isBeginningPage = false;
    /// Whether the control that answered last showed its focus ring. The next page follows it.
    bool m_focusIsVisible = false;
    /// Height of the page container before the transition, in device-independent pixels.
    int m_previousHeight = 0;
};

} // namespace KestrioKit
