#include "host/SurveyWindow.h"

#include "host/Report.h"
#include "host/ScreenReader.h"

#include "KestrioKit/Widgets/Drawing/Animation.h"
#include "KestrioKit/Widgets/Drawing/ViewEffect.h"
#include "KestrioKit/Widgets/Survey/SurveyViewController.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QLabel>
#include <QTextEdit>
#include <QWidget>

using KestrioKit::JSONWriter;
using namespace Qt::StringLiterals;
using namespace std::string_view_literals;

namespace {

constexpr auto libraryNamespace = "KestrioKit::"_L1;
/// The prefix of the names of the internal parts of Qt's scroll areas.
constexpr auto scaffoldPrefix = "qt_"_L1;

qreal alpha(const QWidget &view) {
    const QVariant own = view.property("alpha");
    return KestrioKit::ViewEffect::alpha(&view) * (own.isValid() ? own.toReal() : 1);
}

bool canBeSeen(const QWidget *view) {
    for (; view && !view->isWindow(); view = view->parentWidget()) {
        if (alpha(*view) < 1)
            return false;
    }
    return true;
}

QString typeName(const QWidget &view) {
    const QString name = QString::fromLatin1(view.metaObject()->className());
    return name.startsWith(libraryNamespace) ? name.mid(libraryNamespace.size()) : name;
}

std::optional<QString> shownText(const QWidget &view) {
    if (const auto *const label = qobject_cast<const QLabel *>(&view))
        return label->text();
    if (const auto *const button = qobject_cast<const QAbstractButton *>(&view))
        return button->text();
    if (const auto *const field = qobject_cast<const QTextEdit *>(&view))
        return field->toPlainText();
    return std::nullopt;
}

/// Writes null if the text is absent or empty.
void writeText(JSONWriter &json, std::string_view key, const std::optional<QString> &text) {
    json.key(key);
    writeTextOrNull(json, text && !text->isEmpty() ? text : std::nullopt);
}

void writeAccessibility(JSONWriter &json, const QWidget &view) {
    QAccessibleInterface *const interface =
        QAccessible::queryAccessibleInterface(const_cast<QWidget *>(&view));
    const QAccessible::Role role = interface ? interface->role() : QAccessible::NoRole;
    writeText(json, "name", interface ? interface->text(QAccessible::Name) : QString());
    writeText(json, "role", roleName(role));
}

void writeFrame(JSONWriter &json, const QWidget &view) {
    const QPoint position = view.mapTo(view.window(), QPoint());
    json.key("frame"sv);
    json.beginArray();
    for (const int number : {position.x(), position.y(), view.width(), view.height()})
        json.integer(number);
    json.endArray();
}

bool isLaidOut(const QWidget &view) {
    return !view.size().isEmpty() && !view.objectName().startsWith(scaffoldPrefix);
}

} // namespace

QWidget *surveyOnScreen() {
    return KestrioKit::SurveyViewController::presented();
}

QWidget *visibleView(const QWidget &window, const QString &identifier) {
    for (QWidget *const view : window.findChildren<QWidget *>(identifier)) {
        if (view->isVisible() && canBeSeen(view))
            return view;
    }
    return nullptr;
}

bool surveyIsStill() {
    const QWidget *const survey = surveyOnScreen();
    return survey && survey->findChildren<KestrioKit::Animation *>().isEmpty();
}

void writeTree(JSONWriter &json, const QWidget &view) {
    json.beginObject();
    writeText(json, "type", typeName(view));
    writeText(json, "id", view.objectName());
    writeFrame(json, view);
    json.key("visible"sv);
    json.boolean(view.isVisible());
    json.key("alpha"sv);
    json.number(alpha(view));
    writeText(json, "text", shownText(view));
    writeAccessibility(json, view);
    json.key("children"sv);
    json.beginArray();
    for (const QObject *const child : view.children()) {
        const auto *const part = qobject_cast<const QWidget *>(child);
        if (part && !part->isWindow() && isLaidOut(*part))
            writeTree(json, *part);
    }
    json.endArray();
    json.endObject();
}
