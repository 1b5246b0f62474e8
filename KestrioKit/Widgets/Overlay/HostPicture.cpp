#include "KestrioKit/Widgets/Overlay/HostPicture.h"

#include "KestrioKit/Widgets/Overlay/NativeCover.h"

#include <QBackingStore>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QScreen>

#include <algorithm>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr auto widgetWindow = "QWidgetWindow";
constexpr QLatin1StringView cocoa("cocoa");

// On macOS a capture would prompt the user for the permission to record the screen.
bool canGrabWindows() {
    return QGuiApplication::platformName() != cocoa;
}

// The backing store does not hold what these views show, or does not hold it yet.
bool isOutsideStore(const QWidget *view) {
    return view->testAttribute(Qt::WA_PaintOnScreen) ||
           view->testAttribute(Qt::WA_WState_InPaintEvent) || view->inherits("QOpenGLWidget") ||
           view->inherits("QQuickWidget") || view->inherits("QRhiWidget");
}

/// Returns whether the window's backing store holds everything that the window shows. On macOS its
/// images only hold parts.
bool isShownByStore(const QWidget *host) {
    const QBackingStore *const store = host->backingStore();
    const QWindow *const window = host->windowHandle();
    return store && store->size() == host->size() && window && window->isExposed() &&
           QGuiApplication::platformName() != cocoa && !isOutsideStore(host) &&
           std::ranges::none_of(host->findChildren<QWidget *>(), isOutsideStore);
}

/// Copies what the window shows, after bringing it up to date. This takes a fraction of the time
/// that rendering all widgets takes. Returns a null pixmap if it is not known what is shown.
QPixmap pictureOnScreen(QWidget *host) {
    if (!isShownByStore(host))
        return {};
    QEvent update(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(host, &update);
    if (!isShownByStore(host))
        return {};
    QPixmap picture;
    // The device is only valid while the window is painted. Nothing is painted in an empty region,
    // and what is not painted remains: Qt's own updates rely on that.
    QBackingStore &store = *host->backingStore();
    store.beginPaint({});
    const QPaintDevice *const device = store.paintDevice();
    if (device && device->devType() == QInternal::Image) {
        // The picture must not share its pixels with the window, which paints into them.
        const QImage image = static_cast<const QImage *>(device)->copy();
        if (image.size() == host->size() * host->devicePixelRatio())
            picture = QPixmap::fromImage(image);
    }
    store.endPaint();
    picture.setDevicePixelRatio(host->devicePixelRatio());
    return picture;
}

QPixmap renderedBehind(const QWidget *cover) {
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
    return picture;
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
    // While the cover is visible, what is shown includes it.
    QPixmap picture = cover->isVisible() ? QPixmap() : pictureOnScreen(cover->window());
    if (picture.isNull())
        picture = renderedBehind(cover);
    QPainter painter(&picture);
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
