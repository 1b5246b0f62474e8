#pragma once

#include "KestrioKit/Quick/Controls/ButtonItem.h"

namespace KestrioKit::Quick {

/// Lets arrow keys, Home and End move the focus among the buttons of an item. Use it on the main
/// thread only.
class ArrowKeys : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(KestrioArrowKeys)
    Q_PROPERTY(QQuickItem *container READ container WRITE setContainer REQUIRED)
    Q_PROPERTY(bool mirrored MEMBER m_isMirrored REQUIRED)
    Q_PROPERTY(bool exclusive MEMBER m_isExclusive)
    Q_PROPERTY(QQuickItem *first READ first NOTIFY firstChanged)

public:
    /// The item whose descendants are the buttons. They may be created later.
    QQuickItem *container() const { return m_container; }
    void setContainer(QQuickItem *container);

    /// Returns the first button, or null if there is none.
    QQuickItem *first() const { return m_buttons.value(0); }
    /// Moves the focus to the first button that is enabled.
    Q_INVOKABLE void focusFirst() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void firstChanged();

private:
    void collect();
    bool moveFocus(const QQuickItem *from, int key);
    void makeTabStop(const QObject *button);

    QQuickItem *m_container = nullptr;
    bool m_isMirrored = false;
    /// Whether Tab reaches one button of the group only, the one that had the focus last.
    bool m_isExclusive = false;
    QList<ButtonItem *> m_buttons;
};

} // namespace KestrioKit::Quick
