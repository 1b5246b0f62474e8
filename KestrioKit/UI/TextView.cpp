#include "KestrioKit/UI/TextView.h"

#include "KestrioKit/UI/Drawing.h"
#include "KestrioKit/UI/Fonts.h"
#include "KestrioKit/UI/KestrioUI.h"

#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr int focusedBorderWidth = 2;

// Only a style sheet of its own keeps those of the host away.
QString ownStyleSheet(const QFont &font, const QColor &themeColor, int height) {
    return u"QWidget { background: transparent; border: none; margin: 0; padding: 0; }"
           "QTextEdit { min-height: %1px; max-height: %1px; color: %2; font: %3px \"%4\";"
           " selection-background-color: %5; selection-color: white; }"
           "QScrollBar:vertical { margin: 3px; width: 10px; }"
           "QScrollBar::handle:vertical { background: %6; border-radius: 2px; min-height: 16px; }"
           "QScrollBar::add-line, QScrollBar::sub-line, QScrollBar::add-page, QScrollBar::sub-page"
           " { background: none; border: none; height: 0; }"_s.arg(height)
               .arg(KestrioUI::Color::text().name())
               .arg(font.pixelSize())
               .arg(font.family(), themeColor.name(), KestrioUI::Color::inactive().name());
}

} // namespace

TextView::TextView(const QColor &themeColor, int inset, int height)
    : m_themeColor(themeColor), m_caret(*this, themeColor) {
    const QFont font = preferredFont(TextStyle::body);
    setStyleSheet(ownStyleSheet(font, themeColor, height));
    setFont(font);
    setFixedHeight(height);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAcceptRichText(false);
    setTabChangesFocus(true);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    // What scrolls stays within the border.
    setViewportMargins(focusedBorderWidth, focusedBorderWidth, focusedBorderWidth,
                       focusedBorderWidth);
    document()->setDocumentMargin(inset - focusedBorderWidth);
    viewport()->setAutoFillBackground(false);
}

// Unlike the base's plain text it keeps spaces that do not break.
QString TextView::typedText() const {
    QString text = document()->toRawText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    text.replace(QChar::LineSeparator, u'\n');
    return text;
}

bool TextView::isShowingText() const {
    return !document()->isEmpty() ||
           !document()->firstBlock().layout()->preeditAreaText().isEmpty();
}

bool TextView::event(QEvent *event) {
    if (event->type() != QEvent::Paint)
        return QTextEdit::event(event);
    drawFrame();
    return true;
}

void TextView::drawFrame() {
    constexpr int radius = KestrioUI::CornerRadius::r3;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(sharpRect(painter, rect()), radius, radius);
    drawRoundedBorder(painter, rect(), radius,
                      hasFocus() ? focusedBorderWidth : KestrioUI::BorderWidth::b1, m_themeColor);
}

// What is written decides where it begins, but nothing is written at first.
void TextView::changeEvent(QEvent *event) {
    if (event->type() == QEvent::LayoutDirectionChange) {
        QTextOption option = document()->defaultTextOption();
        option.setTextDirection(layoutDirection() == Qt::RightToLeft ? Qt::RightToLeft
                                                                     : Qt::LayoutDirectionAuto);
        document()->setDefaultTextOption(option);
    }
    QTextEdit::changeEvent(event);
}

// One painter at a time: the base has its own.
void TextView::paintEvent(QPaintEvent *event) {
    QTextEdit::paintEvent(event);
    QPainter painter(viewport());
    m_caret.draw(painter);
}

void TextView::focusInEvent(QFocusEvent *event) {
    QTextEdit::focusInEvent(event);
    m_caret.restart();
    update();
}

void TextView::focusOutEvent(QFocusEvent *event) {
    QTextEdit::focusOutEvent(event);
    m_caret.stop();
    update();
}

} // namespace KestrioKit
