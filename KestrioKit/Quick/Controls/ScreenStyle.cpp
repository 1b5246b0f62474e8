#include "KestrioKit/Quick/Controls/ScreenStyle.h"

#include "KestrioKit/Core/Session/AccessibleTexts.h"
#include "KestrioKit/Core/Session/Fonts.h"
#include "KestrioKit/Core/Session/KeyboardObserver.h"
#include "KestrioKit/Core/Session/WrappedText.h"
#include "KestrioKit/Quick/Facade/MotionPreference.h"

#include <QTextDocument>

#include <algorithm>
#include <array>

namespace KestrioKit::Quick {

using namespace Qt::StringLiterals;

namespace {

struct ContentView {
    SurveyQuestion::Type type;
    QLatin1StringView file;
};

/// The controls for each type of question.
constexpr std::array contentViews{
    ContentView{SurveyQuestion::Type::Open, "OpenQuestionContentView.qml"_L1},
    ContentView{SurveyQuestion::Type::Likert, "LikertQuestionContentView.qml"_L1},
    ContentView{SurveyQuestion::Type::MultipleChoice, "MultipleChoiceQuestionContentView.qml"_L1},
    ContentView{SurveyQuestion::Type::MultiSelect, "MultiSelectQuestionContentView.qml"_L1},
    ContentView{SurveyQuestion::Type::Nps, "NpsQuestionContentView.qml"_L1},
};

} // namespace

ScreenStyle::ScreenStyle(const SurveySession &session, const Clock &clock, QQuickItem *layer)
    : m_layer(layer),
      m_pressGuard(clock),
      m_texts(session.texts()),
      m_palette(session.palette()),
      m_isMirrored(session.layoutDirection() == Qt::RightToLeft) {
    connect(&session, &SurveySession::appearanceChanged, this, [this, &session] {
        m_palette = session.palette();
        Q_EMIT changed();
    });
}

QFont ScreenStyle::titleFont() const {
    return preferredFont(TextStyle::title2);
}

QFont ScreenStyle::bodyFont() const {
    return preferredFont(TextStyle::body);
}

bool ScreenStyle::isAnimated() const {
    return !MotionPreference::shared().isReduced();
}

QUrl ScreenStyle::contentView(int type) const {
    const auto *const view =
        std::ranges::find(contentViews, SurveyQuestion::Type(type), &ContentView::type);
    return view == contentViews.end() ? QUrl() : QUrl(QString(view->file));
}

// Texts

int ScreenStyle::naturalWidth(const QString &text, const QFont &font) const {
    return WrappedText(text, font).naturalWidth();
}

int ScreenStyle::overhangAbove(const QString &text, const QFont &font) const {
    return text.isEmpty() ? 0 : WrappedText(text, font).overhang().top();
}

int ScreenStyle::overhangBelow(const QString &text, const QFont &font) const {
    return text.isEmpty() ? 0 : WrappedText(text, font).overhang().bottom();
}

int ScreenStyle::scaleFontSize(int firstValue, int lastValue, int width, int height) const {
    const QFont font = bodyFont();
    int size = font.pixelSize();
    for (int value = firstValue; value <= lastValue; ++value)
        size = std::min(size,
                        WrappedText(QString::number(value), font).fontSizeWithin({width, height}));
    return size;
}

// A label that needs less than half of the row leaves the rest to the other label.
int ScreenStyle::firstLabelWidth(const QString &first, const QString &last, int width) const {
    const int room = std::max(width - screenMetrics.tinyPadding, 0);
    const int firstWidth = naturalWidth(first, bodyFont());
    const int lastWidth = naturalWidth(last, bodyFont());
    if (firstWidth + lastWidth <= room || lastWidth <= room / 2)
        return room - lastWidth;
    return firstWidth <= room / 2 ? firstWidth : room / 2;
}

int ScreenStyle::widestCheckBox(const QList<SurveyOption> &options) const {
    int widest = 0;
    for (const SurveyOption &option : options)
        widest = std::max(widest, naturalWidth(option.label, bodyFont()));
    return widest + screenMetrics.checkBoxSize + screenMetrics.tinyPadding +
           2 * screenMetrics.optionHorizontalInset;
}

QString ScreenStyle::radioDescription(int position, int count, const QString &firstLabel,
                                      const QString &lastLabel) const {
    return KestrioKit::radioDescription(m_texts, position + 1, count, firstLabel, lastLabel);
}

void ScreenStyle::commitComposition() const {
    KeyboardObserver::commit();
}

QString ScreenStyle::typedText(const QQuickTextDocument *document) const {
    QString text = document->textDocument()->toRawText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    text.replace(QChar::LineSeparator, u'\n');
    return text;
}

} // namespace KestrioKit::Quick
