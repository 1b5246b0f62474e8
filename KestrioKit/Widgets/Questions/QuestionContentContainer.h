#pragma once

#include "KestrioKit/Core/Survey/CodableDynamicType.h"
#include "KestrioKit/Core/Survey/Details.h"
#include "KestrioKit/Widgets/Questions/WeakDelegate.h"

#include <QColor>
#include <QWidget>

#include <optional>

namespace KestrioKit {

/// Is told what a content view was answered with.
class QuestionContentViewDelegate {
public:
    virtual ~QuestionContentViewDelegate() = default;

    /// Without a response, the survey is to go away.
    virtual void questionDidFinish(const std::optional<CodableDynamicType> &response) = 0;
};

/// What a page lets the visitor answer its question with: one class per type of question. For the
/// main thread.
class QuestionContentContainer : public QWidget {
    Q_OBJECT

public:
    QuestionContentContainer(Details questionDetails, const QColor &themeColor,
                             bool isLastQuestion);

    void setDelegate(WeakDelegate<QuestionContentViewDelegate> delegate);

    /// What the button says that sends the answer.
    QString actionTitle() const;

    /// The control that gets the focus when the page comes; null when there is none.
    virtual QWidget *firstControl() const = 0;

protected:
    const Details &questionDetails() const { return m_questionDetails; }
    const QColor &themeColor() const { return m_themeColor; }

    /// Tells the delegate.
    void finish(const CodableDynamicType &response) const;

private:
    Details m_questionDetails;
    QColor m_themeColor;
    bool m_isLastQuestion;
    WeakDelegate<QuestionContentViewDelegate> m_delegate;
};

} // namespace KestrioKit
