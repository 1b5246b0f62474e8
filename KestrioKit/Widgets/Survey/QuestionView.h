#pragma once

#include "KestrioKit/Core/Platform/Threads/Clock.h"
#include "KestrioKit/Widgets/Questions/QuestionContentContainer.h"

namespace KestrioKit {

/// One page: the question, and what it can be answered with. A question of a type unknown here
/// shows its title alone. For the main thread.
class QuestionView final : public QWidget {
    Q_OBJECT

public:
    /// `colors` and `clock` outlive the page.
    QuestionView(const SurveyQuestion &question, const SurveyTexts &texts,
                 const SurveyColors &colors, const Clock &clock);

    /// The control that gets the focus when the page comes; null when there is none.
    QWidget *firstControl() const;

Q_SIGNALS:
    /// The visitor has answered, with a value that `SurveySession::answer()` takes.
    void answered(const QVariant &answer);

private:
    QuestionContentContainer *m_contentView;
};

} // namespace KestrioKit
