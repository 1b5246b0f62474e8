#pragma once

#include "KestrioKit/Core/Platform/Threads/Clock.h"
#include "KestrioKit/Core/Survey/Question.h"
#include "KestrioKit/Widgets/Questions/QuestionContentContainer.h"

namespace KestrioKit {

/// Is told that a page's question has been answered.
class QuestionDelegate {
public:
    virtual ~QuestionDelegate() = default;

    /// `seenAt` is when the page was made, in seconds since 1970.
    virtual void questionDidFinish(const std::optional<CodableDynamicType> &response,
                                   double seenAt) = 0;
};

/// One page: the question, and what it can be answered with. A question of a type unknown here
/// shows its title alone. For the main thread.
class QuestionView final : public QWidget, public QuestionContentViewDelegate {
    Q_OBJECT

public:
    QuestionView(const Question &question, const QColor &themeColor, bool isLastQuestion,
                 const Clock &clock);

    void setDelegate(WeakDelegate<QuestionDelegate> delegate);

    /// The control that gets the focus when the page comes; null when there is none.
    QWidget *firstControl() const;

    void questionDidFinish(const std::optional<CodableDynamicType> &response) override;

private:
    double m_seenAt;
    WeakDelegate<QuestionDelegate> m_delegate;
    QuestionContentContainer *m_contentView;
};

} // namespace KestrioKit
