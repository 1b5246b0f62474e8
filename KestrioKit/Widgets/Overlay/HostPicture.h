#pragma once

#include <QList>
#include <QPixmap>
#include <QPointer>
#include <QWidget>
#include <QWindow>

namespace KestrioKit {

/// What a native window inside of the host's looks like.
struct EmbeddedPicture {
    QPointer<QWindow> window;
    QPixmap picture;
};

/// Of those that nothing covers yet, where the platform gives away what they show.
QList<EmbeddedPicture> embeddedPictures(const QWidget *cover);

/// What the host's window looks like behind `cover`, a child of it. Transparent where the window
/// is.
QPixmap pictureBehind(const QWidget *cover, const QList<EmbeddedPicture> &embedded);

/// Keeps what is transparent in a translucent window transparent, whatever lies below this view on
/// the overlay that it covers. Takes no input. For the main thread.
class HostShape final : public QWidget {
    Q_OBJECT

public:
    explicit HostShape(QWidget *overlay);

    /// Takes the shape of the host's window in `picture`.
    void follow(const QPixmap &picture);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPixmap m_mask;
};

} // namespace KestrioKit
