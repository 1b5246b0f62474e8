#pragma once

#include "KestrioKit/Widgets/Drawing/SurveyColors.h"

#include <QBasicTimer>
#include <QObject>

class QPainter;
class QTextEdit;

namespace KestrioKit {

/// The blinking line at which a field is being written, in a colour of its own: the field's would
/// be the inverse of its background. Hides the field's own; the field says when this one is due.
class Caret final : public QObject {
    Q_OBJECT

public:
    /// `field` and `colors` outlive it.
    Caret(QTextEdit &field, const SurveyColors &colors);

    /// Shows it now, to blink from there on.
    void restart();
    void stop();

    /// On the field's viewport.
    void draw(QPainter &painter) const;

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void fieldChanged();
    void setVisible(bool isVisible);

    QTextEdit &m_field;
    const SurveyColors &m_colors;
    QBasicTimer m_timer;
    bool m_isVisible = false;
};

} // namespace KestrioKit
