#pragma once

#include "KestrioKit/Widgets/Survey/QuestionView.h"

#include <QList>

namespace KestrioKit {

class CloseButton;
class PageControl;
class ScrollIndicator;
class ScrollView;

/// Is told what happens on the card, and says where it leads.
class SurveyViewDelegate {
public:
    virtual ~SurveyViewDelegate() = default;

    virtual void surveyViewDidPresentQuestion(qint64 index) = 0;

    /// The index of the page that follows; absent when the survey is going away instead.
    virtual std::optional<qint64>
    surveyViewDidFinishQuestion(qint64 index, const std::optional<CodableDynamicType> &response,
                                double seenAt) = 0;

    virtual void surveyViewDidFinish() = 0;

    /// The visitor wants to put the survey away while at that page.
    virtual void userInitiatedClose(qint64 index) = 0;
};

/// The card: one page at a time, dots that tell which, and a close button. Any index outside of
/// the questions is the page that thanks. For the main thread.
class SurveyView final : public QWidget, public QuestionDelegate {
    Q_OBJECT

public:
    SurveyView(QList<Question> questions, const QColor &themeColor, const Clock &clock);

    void setDelegate(WeakDelegate<SurveyViewDelegate> delegate);

    qint64 questionIndex() const { return m_questionIndex; }

    /// Whether the page that thanks is shown, where nothing is left to close.
    bool isFinished() const;

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

    void questionDidFinish(const std::optional<CodableDynamicType> &response,
                           double seenAt) override;

Q_SIGNALS:
    /// `heightForWidth()` gives something else now.
    void heightChanged();

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    bool isQuestion(qint64 index) const;
    QWidget *makeQuestionView(qint64 index);
    void setupNewQuestionView(qint64 index);
    void setQuestionIndex(qint64 index);
    void transitionToQuestion(qint64 index);
    void replaceQuestionView();
    void growToQuestionView(int previousHeight);
    void showQuestionView();
    void finishSurveyIfNeeded();
    void closeButtonTapped();
    void layOut();

    QList<Question> m_questions;
    QColor m_themeColor;
    const Clock &m_clock;
    WeakDelegate<SurveyViewDelegate> m_delegate;
    ScrollView *m_questionContainerView;
    ScrollIndicator *m_scrollIndicator;
    PageControl *m_pageControl;
    CloseButton *m_closeButton;
    QWidget *m_currentQuestionView = nullptr;
    qint64 m_questionIndex = 0;
    /// The question that the page on screen asks: while it fades, `m_questionIndex` is the next.
    qint64 m_presentedIndex = 0;
    bool m_isLeavingPage = false;
    bool m_isBeginningPage = false;
    bool m_focusIsVisible = false;
    /// Of the container: from the height of the page before to that of this one.
    int m_previousHeight = 0;
    qreal m_growth = 1;
};

} // namespace KestrioKit
