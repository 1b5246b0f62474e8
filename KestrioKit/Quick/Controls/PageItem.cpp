#include "KestrioKit/Quick/Controls/PageItem.h"

#include "KestrioKit/Quick/Controls/AccessibleChildren.h"

#include <QAccessibleObject>
#include <QQuickWindow>

namespace KestrioKit::Quick {

namespace {

class PageInterface final : public QAccessibleObject {
public:
    explicit PageInterface(PageItem *page) : QAccessibleObject(page) {}

    QAccessibleInterface *parent() const override { return accessibleParent(*page()); }
    int childCount() const override { return int(accessibleChildren(*page()).size()); }
    QAccessibleInterface *child(int index) const override {
        return accessibleChildren(*page()).value(index);
    }
    int indexOfChild(const QAccessibleInterface *interface) const override {
        return int(
            accessibleChildren(*page()).indexOf(const_cast<QAccessibleInterface *>(interface)));
    }
    QWindow *window() const override { return page()->window(); }
    QRect rect() const override {
        const QRectF area = page()->mapRectToScene({0, 0, page()->width(), page()->height()});
        return {page()->window()->mapToGlobal(area.topLeft().toPoint()), area.size().toSize()};
    }
    QAccessible::Role role() const override { return QAccessible::Grouping; }
    QString text(QAccessible::Text text) const override {
        return text == QAccessible::Name ? page()->title() : QString();
    }

    QAccessible::State state() const override {
        QAccessible::State state;
        state.invisible = !page()->isVisible();
        state.disabled = !page()->isEnabled();
        state.focusable = true;
        state.focused = page()->hasActiveFocus();
        return state;
    }

    QList<std::pair<QAccessibleInterface *, QAccessible::Relation>>
    relations(QAccessible::Relation match) const override {
        if (!page()->position() || !match.testFlag(QAccessible::Label))
            return {};
        return {{QAccessible::queryAccessibleInterface(page()->position()), QAccessible::Label}};
    }

private:
    PageItem *page() const { return static_cast<PageItem *>(object()); }
};

QAccessibleInterface *makeInterface(const QString &, QObject *object) {
    auto *const page = qobject_cast<PageItem *>(object);
    return page ? new PageInterface(page) : nullptr;
}

} // namespace

// Qt ignores repeated installations, but drops the factory with each application object.
PageItem::PageItem() {
    QAccessible::installFactory(makeInterface);
}

void PageItem::setTitle(const QString &title) {
    m_title = title;
    Q_EMIT titleChanged();
}

void PageItem::setPosition(QQuickItem *position) {
    m_position = position;
    Q_EMIT positionChanged();
}

} // namespace KestrioKit::Quick
