#include "host/quick/QuickHostWindow.h"

#include <QQuickItem>

using namespace Qt::StringLiterals;

namespace {

const QUrl windowFile(u"qrc:/qt-project.org/imports/KestrioHost/ShopWindow.qml"_s);

constexpr auto surveyType = "SurveyViewController"_L1;
/// The prefix of the names of Qt's own classes.
constexpr auto scaffoldPrefix = "QQuick"_L1;
/// The suffix of the names of the library's classes that QML components draw with.
constexpr auto drawingSuffix = "Item"_L1;

/// Returns the name of the item's class or component, without its namespaces and without what the
/// engine appends, as in `SurveyCard_QMLTYPE_3`.
QString typeName(const QQuickItem &item) {
    const QString name = QString::fromLatin1(item.metaObject()->className());
    return name.section(u"::"_s, -1).section(u"_QML"_s, 0, 0);
}

/// Returns whether the item is only a part of what a component draws.
bool isScaffold(const QQuickItem &item) {
    const QString name = typeName(item);
    return name.startsWith(scaffoldPrefix) || name.endsWith(drawingSuffix);
}

qreal alpha(const QQuickItem &item) {
    const QVariant own = item.property("alpha");
    return item.opacity() * (own.isValid() ? own.toReal() : 1);
}

QRectF bounds(const QQuickItem &item) {
    return {0, 0, item.width(), item.height()};
}

QRect frameInWindow(const QQuickItem &item) {
    return item.mapRectToScene(bounds(item)).toRect();
}

bool isCentreInView(const QQuickItem &item) {
    const QPointF centre = bounds(item).center();
    for (const QQuickItem *area = &item; area; area = area->parentItem()) {
        const bool limits = area->clip() || !area->parentItem();
        if (limits && !bounds(*area).contains(area->mapFromItem(&item, centre)))
            return false;
    }
    return true;
}

/// Returns the first of `item` and the items on it that satisfies the condition; null if none does.
template <typename Condition>
const QQuickItem *findItem(const QQuickItem &item, const Condition &condition) {
    if (condition(item))
        return &item;
    for (const QQuickItem *const child : item.childItems()) {
        if (const QQuickItem *const found = findItem(*child, condition))
            return found;
    }
    return nullptr;
}

bool canBeSeen(const QQuickItem *item) {
    for (; item; item = item->parentItem()) {
        if (alpha(*item) < 1)
            return false;
    }
    return true;
}

/// Returns the control that the item belongs to if it is an internal part of one of Qt's, such as
/// the text of a spin box; otherwise the item itself.
const QQuickItem &controlOf(const QQuickItem &item) {
    const bool isPart = item.objectName().isEmpty() && isScaffold(item);
    const QQuickItem *scope = isPart ? item.parentItem() : nullptr;
    while (scope && !scope->isFocusScope())
        scope = scope->parentItem();
    return scope ? *scope : item;
}

const QQuickItem *surveyIn(const QQuickWindow &window) {
    return findItem(*window.contentItem(),
                    [](const QQuickItem &item) { return typeName(item) == surveyType; });
}

ViewNode nodeOf(const QQuickItem &item);

/// Appends the items on `item`, or what is on them if they are scaffolding.
void appendParts(QList<ViewNode> &nodes, const QQuickItem &item) {
    for (const QQuickItem *const child : item.childItems()) {
        if (isScaffold(*child))
            appendParts(nodes, *child);
        else
            nodes.append(nodeOf(*child));
    }
}

ViewNode nodeOf(const QQuickItem &item) {
    ViewNode node = ViewNode::describing(item);
    node.type = typeName(item);
    node.frame = frameInWindow(item);
    node.isVisible = item.isVisible();
    node.alpha = alpha(item);
    node.text = item.property("text").toString();
    appendParts(node.children, item);
    return node;
}

} // namespace

std::unique_ptr<HostWindow> QuickHostWindow::create() {
    std::unique_ptr<QuickHostWindow> window(new QuickHostWindow);
    if (!window->m_window)
        return nullptr;
    return window;
}

QuickHostWindow::QuickHostWindow() {
    m_engine.load(windowFile);
    m_window = qobject_cast<QQuickWindow *>(m_engine.rootObjects().value(0));
}

// As with widgets, the first control has the focus to begin with.
void QuickHostWindow::show() {
    if (!focusedView())
        m_window->contentItem()->nextItemInFocusChain()->forceActiveFocus(Qt::TabFocusReason);
    m_window->show();
}

std::optional<VisibleView> QuickHostWindow::visibleView(const QString &identifier) const {
    const QQuickItem *const item =
        findItem(*m_window->contentItem(), [&identifier](const QQuickItem &candidate) {
            return candidate.objectName() == identifier && candidate.isVisible() &&
                   canBeSeen(&candidate);
        });
    if (!item)
        return std::nullopt;
    return VisibleView{frameInWindow(*item), isCentreInView(*item)};
}

// If no control has the focus, the item that holds the window's content has it.
std::optional<QString> QuickHostWindow::focusedView() const {
    const QQuickItem *const focus = m_window->activeFocusItem();
    if (!focus || focus == m_window->contentItem() ||
        focus == m_window->property("contentItem").value<QQuickItem *>())
        return std::nullopt;
    const QQuickItem &control = controlOf(*focus);
    return control.objectName().isEmpty() ? typeName(control) : control.objectName();
}

bool QuickHostWindow::hasSurvey() const {
    return surveyIn(*m_window);
}

bool QuickHostWindow::surveyIsStill() const {
    const QQuickItem *const survey = surveyIn(*m_window);
    return survey && survey->property("still").toBool();
}

std::optional<ViewNode> QuickHostWindow::survey() const {
    const QQuickItem *const survey = surveyIn(*m_window);
    return survey ? std::optional(nodeOf(*survey)) : std::nullopt;
}
