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

/// The card: one page at a time, dots that tell which, and a close button. Any index outside of
/// the questions is the page that thanks. For the main thread.
class SurveyView final : public QWidget {
    Q_OBJECT

public:
    /// The session may go before the card does: no page answers any more then.
    SurveyView(SurveySession &session, const Clock &clock);

    /// Whether the page that thanks is shown, where nothing is left to close.
    bool isFinished() const { return m_isFinished; }

    /// Where the page ends, in the card's own coordinates.
    int pageBottom() const;

    /// Has the question read out, and moves the focus to its first control, or to the page itself
    /// when it has none. `reason` decides whether the focus shows.
    void beginPage(Qt::FocusReason reason);

    /// Scrolls to `view`, if it lies on the page.
    void reveal(const QWidget *view);
    /// Scrolls as the key says.
    void scroll(int key);

    /// The height at which the page need not scroll, while the card changes pages, one in between.
    int heightForWidth(int width) const override;
    bool hasHeightForWidth() const override { return true; }

Q_SIGNALS:
    /// `heightForWidth()` gives something else now.
    void heightChanged();
    /// The page of another question is on the card. Not emitted for the first one.
    void questionPresented();
    /// The page that thanks is on the card.
    void finished();
    /// The visitor wants to put the survey away.
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
    QWidget *m_currentQuestionView = nullptr;
    /// The question that the page on screen asks: while it fades, the session is at the next one.
    int m_presentedIndex = 0;
    bool m_isFinished = false;
    bool m_isLeavingPage = false;
    bool m_isBeginningPage = false;
    bool m_focusIsVisible = false;
    /// Of the container: from the height of the page before to that of this one.
    int m_previousHeight = 0;
    qreal m_growth = 1;
};

} // namespace KestrioKit
