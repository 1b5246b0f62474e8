#pragma once

#include <QList>
#include <QPixmap>
#include <QPointer>
#include <QWidget>
#include <QWindow>

namespace KestrioKit {

/// A picture of a native window that is embedded in the host window.
struct EmbeddedPicture {
    QPointer<QWindow> window;
    QPixmap picture;
};

/// Captures the native windows beside `cover`. Call it before `cover` hides them. Returns an empty
/// list where the platform does not allow a capture.
QList<EmbeddedPicture> embeddedPictures(const QWidget *cover);

/// Returns a picture of the host window as it looks behind its child `cover`, with the captured
/// windows `embedded`. The result is transparent where the window is.
QPixmap pictureBehind(const QWidget *cover, const QList<EmbeddedPicture> &embedded);

/// Keeps the transparent areas of a translucent host window transparent. It lies on top of the
/// overlay and erases there what the overlay has painted. It accepts no mouse input. Use it on the
/// main thread only.
class HostShape final : public QWidget {
    Q_OBJECT

public:
    /// `overlay` becomes the parent and owner.
    explicit HostShape(QWidget *overlay);

    /// Takes over the shape of the host window from the transparency of `picture`.
    void follow(const QPixmap &picture);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    /// Opaque where the host window is not fully transparent.
    QPixmap m_mask;
};

} // namespace KestrioKit
