#pragma once

#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

#include <QObject>
#include <QTimer>

class QPainter;
class QTextEdit;

namespace KestrioKit {

/// The blinking text cursor of a field, in the accent colour. It replaces the field's own cursor,
/// whose colour would be the inverse of the background. The field calls `restart()` and `stop()`
/// when the focus changes. Use it on the main thread only.
class Caret final : public QObject {
    Q_OBJECT

public:
    /// `field` and `colors` must outlive the caret.
    Caret(QTextEdit &field, const SurveyColors &colors);

    /// Shows the caret immediately and starts the blinking again.
    void restart();
    /// Hides the caret.
    void stop();

    /// Draws the caret if it is visible. `painter` must paint on the field's viewport.
    void draw(QPainter &painter) const;

private:
    void fieldChanged();
    void setVisible(bool isVisible);

    QTextEdit &m_field;
    const SurveyColors &m_colors;
    QTimer m_timer;
    bool m_isVisible = false;
};

} // namespace KestrioKit
