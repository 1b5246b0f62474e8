#pragma once

#include "KestrioKit/Widgets/Controls/TitledButton.h"

namespace KestrioKit {

/// The button that sends an answer. It is filled with the accent colour, and its title wraps. Use
/// it on the main thread only.
class ActionButton final : public TitledButton {
    Q_OBJECT

public:
    /// `title` is plain text. `colors` must outlive the button.
    ActionButton(const QString &title, const SurveyColors &colors);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace KestrioKit
