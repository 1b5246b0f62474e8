#include "KestrioKit/UI/PageControl.h"

#include <QAccessibleWidget>
#include <QPainter>

#include <algorithm>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

namespace Constant {
constexpr int height = 26;
constexpr qreal dotSize = 7;
/// Of a dot beyond which there are more.
constexpr qreal edgeDotSize = 4;
/// From the middle of a dot to that of the next.
constexpr int pitch = 16;
} // namespace Constant

class PageControlInterface final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit PageControlInterface(PageControl *view)
        : QAccessibleWidget(view, QAccessible::ProgressBar), m_view(view) {}

    void *interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface *>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }
    QVariant currentValue() const override { return m_view->currentPage() + 1; }
    QVariant minimumValue() const override { return 1; }
    QVariant maximumValue() const override { return m_view->numberOfPages(); }
    QVariant minimumStepSize() const override { return 1; }
    void setCurrentValue(const QVariant &) override {}

private:
    const PageControl *m_view;
};

QAccessibleInterface *makeInterface(const QString &, QObject *object) {
    auto *const view = qobject_cast<PageControl *>(object);
    return view ? new PageControlInterface(view) : nullptr;
}

} // namespace

PageControl::PageControl(int numberOfPages, const QColor &pageIndicatorTintColor,
                         const QColor &currentPageIndicatorTintColor)
    : m_numberOfPages(numberOfPages),
      m_pageIndicatorTintColor(pageIndicatorTintColor),
      m_currentPageIndicatorTintColor(currentPageIndicatorTintColor) {
    // Qt takes it once, and forgets it with each application object.
    QAccessible::installFactory(makeInterface);
    describe();
}

void PageControl::setCurrentPage(int page) {
    m_currentPage = std::clamp(page, 0, std::max(m_numberOfPages - 1, 0));
    describe();
    QAccessibleValueChangeEvent event(this, m_currentPage + 1);
    QAccessible::updateAccessibility(&event);
    update();
}

void PageControl::describe() {
    setAccessibleName(u"%1 / %2"_s.arg(m_currentPage + 1).arg(m_numberOfPages));
}

QSize PageControl::sizeHint() const {
    return {m_numberOfPages * Constant::pitch, Constant::height};
}

void PageControl::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const int shown = std::min(m_numberOfPages, width() / Constant::pitch);
    const int first = std::clamp(m_currentPage - shown / 2, 0, m_numberOfPages - shown);
    const qreal margin = (width() - shown * Constant::pitch) / 2.0;
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    for (int place = 0; place < shown; ++place) {
        const int page = first + (isMirrored ? shown - 1 - place : place);
        painter.setBrush(page == m_currentPage ? m_currentPageIndicatorTintColor
                                               : m_pageIndicatorTintColor);
        const QPointF middle(margin + (place + 0.5) * Constant::pitch, height() / 2.0);
        const bool isEdge = (page == first && first > 0) ||
                            (page == first + shown - 1 && page < m_numberOfPages - 1);
        const qreal radius = (isEdge ? Constant::edgeDotSize : Constant::dotSize) / 2;
        painter.drawEllipse(middle, radius, radius);
    }
}

} // namespace KestrioKit
