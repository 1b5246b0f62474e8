#include "KestrioKit/Widgets/Controls/TextView.h"

#include "KestrioKit/Core/Session/Fonts.h"
#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/Core/Session/ScreenMetrics.h"
#include "KestrioKit/Widgets/Drawing/Drawing.h"
#include "KestrioKit/Widgets/Drawing/OwnLook.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr int focusedBorderWidth = screenMetrics.focusedTextFieldBorderWidth;

QString ownStyleSheet(const SurveyPalette &palette, int height) {
    return u"QWidget { %1 }"
           "QTextEdit { min-height: %2px; max-height: %2px; color: %3;"
           " selection-background-color: %4; selection-color: %6; }"
           "QScrollBar:vertical { margin: 3px; width: 10px; }"
           "QScrollBar::handle:vertical { %1 background: %5; border-radius: 2px;"
           " min-height: 16px; }"
           "QScrollBar::add-line, QScrollBar::sub-line, QScrollBar::add-page, QScrollBar::sub-page"
           " { background: none; border: none; height: 0; }"_s.arg(undoingDeclarations())
               .arg(height)
               .arg(palette.text.name(), palette.accent.name(), palette.symbol.name(),
                    palette.textOnAccent.name());
}

QString menuStyleSheet(const SurveyPalette &palette, const QFont &font) {
    return u"QMenu, QMenu::item, QMenu::separator { %1 }"
           "QMenu { background: %7; border: 1px solid %2; color: %3; font: %4px \"%5\"; }"
           "QMenu::item { color: %3; padding: 6px 24px; }"
           "QMenu::item:selected { background: %6; color: %8; }"
           "QMenu::item:disabled { background: none; color: %9; }"
           "QMenu::separator { background: %2; height: 1px; margin: 4px 0; }"_s
               .arg(undoingDeclarations(), palette.symbol.name(), palette.text.name())
               .arg(font.pixelSize())
               .arg(font.family(), palette.accent.name(), palette.card.name(),
                    palette.textOnAccent.name(), palette.secondaryText.name());
}

} // namespace

TextView::TextView(const SurveyColors &colors, int inset, int height)
    : m_colors(colors), m_height(height), m_caret(*this, colors) {
    setStyle(ownStyle());
    adoptColors();
    connect(&colors, &SurveyColors::changed, this, &TextView::adoptColors);
    setFixedHeight(height);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAcceptRichText(false);
    setTabChangesFocus(true);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    // The margins keep scrolled text inside the border.
    setViewportMargins(focusedBorderWidth, focusedBorderWidth, focusedBorderWidth,
                       focusedBorderWidth);
    document()->setDocumentMargin(inset - focusedBorderWidth);
    viewport()->setAutoFillBackground(false);
    // Setting the document margin has added an undo step.
    document()->clearUndoRedoStacks();
}

void TextView::adoptColors() {
    m_font = preferredFont(TextStyle::body);
    setStyleSheet(ownStyleSheet(m_colors.palette(), m_height));
    setFont(m_font);
}

// Unlike `toPlainText()`, this keeps no-break spaces.
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
    painter.setBrush(m_colors->card);
    painter.drawRoundedRect(sharpRect(painter, rect()), radius, radius);
    drawRoundedBorder(painter, rect(), radius,
                      hasFocus() ? focusedBorderWidth : KestrioUI::BorderWidth::b1,
                      m_colors->controlBorder);
}

// The text decides its direction. An empty field in a right-to-left survey must start at the right.
void TextView::changeEvent(QEvent *event) {
    if (event->type() == QEvent::LayoutDirectionChange) {
        QTextOption option = document()->defaultTextOption();
        option.setTextDirection(layoutDirection() == Qt::RightToLeft ? Qt::RightToLeft
                                                                     : Qt::LayoutDirectionAuto);
        document()->setDefaultTextOption(option);
    }
    QTextEdit::changeEvent(event);
    // The base class adopts what a host's font or style sheet adds to the widget's font.
    if (document()->defaultFont() != m_font)
        document()->setDefaultFont(m_font);
}

// The base class's menu would inherit the field's style sheet, and its entries would be invisible.
void TextView::contextMenuEvent(QContextMenuEvent *event) {
    QMenu *const menu = createStandardContextMenu(event->pos());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setStyleSheet(menuStyleSheet(m_colors.palette(), m_font));
    menu->popup(event->globalPos());
}

// The base class paints first because only one painter may be active at a time.
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
