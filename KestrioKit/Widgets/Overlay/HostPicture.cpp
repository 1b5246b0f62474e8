#include "KestrioKit/Widgets/Overlay/HostPicture.h"

#include "KestrioKit/Widgets/Overlay/NativeCover.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

#include <algorithm>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr auto widgetWindow = "QWidgetWindow";

// On macOS a capture would prompt the user for the permission to record the screen.
bool canGrabWindows() {
    return QGuiApplication::platformName() != "cocoa"_L1;
}

} // namespace

// `QWidget::render()` omits windows that are not widgets.
QList<EmbeddedPicture> embeddedPictures(const QWidget *cover) {
    QList<EmbeddedPicture> pictures;
    if (!canGrabWindows())
        return pictures;
    const QList<QWindow *> windows = NativeCover::windowsBeside(cover);
    for (QWindow *const window : windows) {
        if (window->isExposed() && !window->inherits(widgetWindow))
            pictures.append({window, window->screen()->grabWindow(window->winId())});
    }
    return pictures;
}

QPixmap pictureBehind(const QWidget *cover, const QList<EmbeddedPicture> &embedded) {
    QWidget *const host = cover->window();
    const bool isTranslucent = host->testAttribute(Qt::WA_TranslucentBackground);
    QPixmap picture(host->size() * cover->devicePixelRatio());
    picture.setDevicePixelRatio(cover->devicePixelRatio());
    picture.fill(isTranslucent ? QColor(Qt::transparent) : host->palette().color(QPalette::Window));
    QPainter painter(&picture);
    host->render(&painter, {}, {}, QWidget::DrawWindowBackground);
    for (QObject *const child : host->children()) {
        auto *const view = qobject_cast<QWidget *>(child);
        if (view && view != cover && !view->isWindow() && view->isVisible())
            view->render(&painter, view->pos(), {},
                         QWidget::DrawWindowBackground | QWidget::DrawChildren);
    }
    for (const EmbeddedPicture &known : embedded) {
        if (known.window && known.window->isVisible())
            painter.drawPixmap(known.window->position(), known.picture);
    }
    return picture;
}

HostShape::HostShape(QWidget *overlay) : QWidget(overlay) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

// Semi-transparent pixels count as opaque, so that the card stays opaque over them.
void HostShape::follow(const QPixmap &picture) {
    QImage mask = picture.toImage().convertToFormat(QImage::Format_Alpha8);
    for (int y = 0; y < mask.height(); ++y) {
        uchar *const line = mask.scanLine(y);
        std::transform(line, line + mask.width(), line,
                       [](uchar alpha) { return alpha > 0 ? uchar(255) : uchar(0); });
    }
    m_mask = QPixmap::fromImage(mask.convertToFormat(QImage::Format_ARGB32_Premultiplied));
    setGeometry(parentWidget()->rect());
    raise();
    update();
}

void HostShape::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawPixmap(QPoint(), m_mask);
}

} // namespace KestrioKit
