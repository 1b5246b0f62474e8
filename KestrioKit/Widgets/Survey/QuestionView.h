#pragma once

#include "KestrioKit/Core/Platform/Threads/Clock.h"
#include "KestrioKit/Widgets/Questions/QuestionContentContainer.h"

namespace KestrioKit {

/// The page of one question: its title and the controls that answer it. If the question's type is
/// unknown, the page shows the title alone. Use it on the main thread only.
class QuestionView final : public QWidget {
    Q_OBJECT

public:
    /// The page copies what it needs of `question` and `texts`. `colors` and `clock` must outlive
    /// it.
    QuestionView(const SurveyQuestion &question, const SurveyTexts &texts,
                 const SurveyColors &colors, const Clock &clock);

    /// Returns the control that receives the focus when the page is shown, or null if there is
    /// none.
    QWidget *firstControl() const;

Q_SIGNALS:
    /// Emitted when the visitor answers. `SurveySession::answer()` accepts `answer`.
    void answered(const QVariant &answer);

private:
    /// The answer controls. Null if the question's type is unknown.
    QuestionContentContainer *m_contentView;
};

} // namespace KestrioKit
