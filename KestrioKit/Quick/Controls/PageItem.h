#pragma once

#include <QPointer>
#include <QQuickItem>

namespace KestrioKit::Quick {

/// A page of the card. For assistive technology it is a group with a title, which is labelled by
/// the item that says which page it is. The attached `Accessible` type offers no such relation. Use
/// it on the main thread only.
class PageItem : public QQuickItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(KestrioPage)
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged)
    Q_PROPERTY(QQuickItem *firstControl MEMBER m_firstControl NOTIFY firstControlChanged)
    Q_PROPERTY(QQuickItem *position READ position WRITE setPosition NOTIFY positionChanged)

public:
    PageItem();

    /// The accessible name.
    QString title() const { return m_title; }
    void setTitle(const QString &title);

    /// The control that receives the focus when the page is shown; null if there is none.
    QQuickItem *firstControl() const { return m_firstControl; }

    /// The item that says which page it is; null if there is none.
    QQuickItem *position() const { return m_position; }
    void setPosition(QQuickItem *position);

Q_SIGNALS:
    void titleChanged();
    void firstControlChanged();
    void positionChanged();

private:
    QString m_title;
    QQuickItem *m_firstControl = nullptr;
    QPointer<QQuickItem> m_position;
};

} // namespace KestrioKit::Quick
