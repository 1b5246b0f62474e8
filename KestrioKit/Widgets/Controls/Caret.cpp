#include "KestrioKit/Widgets/Controls/Caret.h"

#include <QGuiApplication>
#include <QPainter>
#include <QStyleHints>
#include <QTextEdit>

namespace KestrioKit {

namespace {

constexpr int width = 2;

} // namespace

Caret::Caret(QTextEdit &field, const SurveyColors &colors) : m_field(field), m_colors(colors) {
    field.setCursorWidth(0);
    connect(&field, &QTextEdit::cursorPositionChanged, this, &Caret::fieldChanged);
}

void Caret::fieldChanged() {
    if (m_field.hasFocus())
        restart();
}

void Caret::restart() {
    setVisible(true);
    const int period = QGuiApplication::styleHints()->cursorFlashTime();
    if (period > 0)
        m_timer.start(period / 2, this);
}

void Caret::stop() {
    m_timer.stop();
    setVisible(false);
}

void Caret::timerEvent(QTimerEvent *) {
    setVisible(!m_isVisible);
}

void Caret::setVisible(bool isVisible) {
    m_isVisible = isVisible;
    m_field.viewport()->update();
}

void Caret::draw(QPainter &painter) const {
    const QRect place = m_field.cursorRect().translated(-width / 2, 0);
    if (m_isVisible)
        painter.fillRect(place.x(), place.y(), width, place.height(), m_colors->accent);
}

} // namespace KestrioKit
