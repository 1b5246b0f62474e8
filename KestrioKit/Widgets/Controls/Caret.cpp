#include "KestrioKit/Widgets/Controls/Caret.h"

#include "KestrioKit/Core/Session/ScreenMetrics.h"

#include <QGuiApplication>
#include <QPainter>
#include <QStyleHints>
#include <QTextEdit>

namespace KestrioKit {

using namespace std::chrono_literals;

namespace {

constexpr int width = screenMetrics.caretWidth;

} // namespace

Caret::Caret(QTextEdit &field, const SurveyColors &colors) : m_field(field), m_colors(colors) {
    field.setCursorWidth(0);
    connect(&field, &QTextEdit::cursorPositionChanged, this, &Caret::fieldChanged);
    connect(&m_timer, &QTimer::timeout, this, [this] { setVisible(!m_isVisible); });
}

void Caret::fieldChanged() {
    if (m_field.hasFocus())
        restart();
}

void Caret::restart() {
    setVisible(true);
    const std::chrono::milliseconds period(QGuiApplication::styleHints()->cursorFlashTime());
    if (period > 0ms)
        m_timer.start(period / 2);
}

void Caret::stop() {
    m_timer.stop();
    setVisible(false);
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
