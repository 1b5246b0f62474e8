#include "host/widgets/WidgetsHostWindow.h"

#include "KestrioKit/Core/Session/Animation.h"
#include "KestrioKit/Widgets/Drawing/ViewEffect.h"
#include "KestrioKit/Widgets/Survey/SurveyViewController.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QTextEdit>
#include <QWindow>

using namespace Qt::StringLiterals;

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

/// Returns whether the point of the view is not scrolled out of sight.
bool isInView(const QWidget &view, const QPoint &point) {
    for (const QWidget *area = &view; area;
         area = area->isWindow() ? nullptr : area->parentWidget())
        if (!area->rect().contains(view.mapTo(area, point)))
            return false;
    return true;
}

QString typeName(const QWidget &view) {
    const QString name = QString::fromLatin1(view.metaObject()->className());
    return name.startsWith(libraryNamespace) ? name.mid(libraryNamespace.size()) : name;
}

QString shownText(const QWidget &view) {
    if (const auto *const label = qobject_cast<const QLabel *>(&view))
        return label->text();
    if (const auto *const button = qobject_cast<const QAbstractButton *>(&view))
        return button->text();
    if (const auto *const field = qobject_cast<const QTextEdit *>(&view))
        return field->toPlainText();
    return {};
}

QRect frameInWindow(const QWidget &view) {
    return {view.mapTo(view.window(), QPoint()), view.size()};
}

bool isLaidOut(const QWidget &view) {
    return !view.size().isEmpty() && !view.objectName().startsWith(scaffoldPrefix);
}

ViewNode nodeOf(const QWidget &view) {
    ViewNode node = ViewNode::describing(view);
    node.type = typeName(view);
    node.frame = frameInWindow(view);
    node.isVisible = view.isVisible();
    node.alpha = alpha(view);
    node.text = shownText(view);
    for (const QObject *const child : view.children()) {
        const auto *const part = qobject_cast<const QWidget *>(child);
        if (part && !part->isWindow() && isLaidOut(*part))
            node.children.append(nodeOf(*part));
    }
    return node;
}

const QWidget *surveyOnScreen() {
    return KestrioKit::SurveyViewController::presented();
}

} // namespace

// Without a focused window there may be no seat, and Qt for Wayland then crashes when a text field
// requests the on-screen keyboard.
QWindow &WidgetsHostWindow::inputWindow() const {
    qApp->setAutoSipEnabled(QGuiApplication::focusWindow());
    return *m_window.windowHandle();
}

std::optional<VisibleView> WidgetsHostWindow::visibleView(const QString &identifier) const {
    for (const QWidget *const view : m_window.findChildren<QWidget *>(identifier)) {
        if (view->isVisible() && canBeSeen(view))
            return VisibleView{frameInWindow(*view), isInView(*view, view->rect().center())};
    }
    return std::nullopt;
}

std::optional<QString> WidgetsHostWindow::focusedView() const {
    const QWidget *const focus = m_window.focusWidget();
    if (!focus)
        return std::nullopt;
    return focus->objectName().isEmpty() ? QString::fromLatin1(focus->metaObject()->className())
                                         : focus->objectName();
}

bool WidgetsHostWindow::hasSurvey() const {
    return surveyOnScreen();
}

bool WidgetsHostWindow::surveyIsStill() const {
    const QWidget *const survey = surveyOnScreen();
    return survey && survey->findChildren<KestrioKit::Animation *>().isEmpty();
}

std::optional<ViewNode> WidgetsHostWindow::survey() const {
    const QWidget *const survey = surveyOnScreen();
    return survey ? std::optional(nodeOf(*survey)) : std::nullopt;
}
