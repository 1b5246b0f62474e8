#include "KestrioKit/Widgets/Controls/LeadingStack.h"

#include <QStyle>
#include <QWidget>

#include <algorithm>

namespace KestrioKit {

namespace {

QSize sizeWithin(int width, const QLayoutItem &item) {
    const int own = std::min(item.sizeHint().width(), width);
    return {own, item.hasHeightForWidth() ? item.heightForWidth(own) : item.sizeHint().height()};
}

} // namespace

LeadingStack::LeadingStack(int spacing) {
    setContentsMargins({});
    setSpacing(spacing);
}

LeadingStack::~LeadingStack() {
    // A nested layout removes itself from the list when it is deleted.
    while (!m_items.isEmpty())
        delete m_items.takeFirst();
}

void LeadingStack::addLayout(QLayout *layout) {
    addChildLayout(layout);
    addItem(layout);
}

QLayoutItem *LeadingStack::takeAt(int index) {
    return index >= 0 && index < m_items.size() ? m_items.takeAt(index) : nullptr;
}

int LeadingStack::heightForWidth(int width) const {
    int height = spacing() * std::max(count() - 1, 0);
    for (const QLayoutItem *const item : m_items)
        height += sizeWithin(width, *item).height();
    return height;
}

QSize LeadingStack::sizeHint() const {
    int width = 0;
    for (const QLayoutItem *const item : m_items)
        width = std::max(width, item->sizeHint().width());
    return {width, heightForWidth(width)};
}

void LeadingStack::setGeometry(const QRect &rect) {
    QLayout::setGeometry(rect);
    int top = rect.top();
    for (QLayoutItem *const item : m_items) {
        const QRect frame(QPoint(rect.left(), top), sizeWithin(rect.width(), *item));
        item->setGeometry(QStyle::visualRect(parentWidget()->layoutDirection(), rect, frame));
        top += frame.height() + spacing();
    }
}

} // namespace KestrioKit
