#pragma once

#include <QList>
#include <QObject>

class QWidget;

namespace KestrioKit {

/// Has the arrow keys, Home and End move the focus along a row or column of controls. For the main
/// thread.
class ArrowKeys final : public QObject {
    Q_OBJECT

public:
    enum class TabStops { each, one };

    /// With one stop, Tab comes to the control that had the focus last, and leaves from there.
    ArrowKeys(QList<QWidget *> controls, TabStops tabStops, QObject *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void makeTabStop(const QObject *control);
    bool moveFocus(const QWidget *from, int key);

    QList<QWidget *> m_controls;
    TabStops m_tabStops;
};

} // namespace KestrioKit
