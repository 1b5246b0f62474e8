#pragma once

#include <QList>
#include <QObject>

class QWidget;

namespace KestrioKit {

/// Moves the focus along a row or column of controls with the arrow keys, Home and End. Beyond the
/// ends it leaves the keys to the page. Use it on the main thread only.
class ArrowKeys final : public QObject {
    Q_OBJECT

public:
    /// Whether Tab stops at each control or only at one.
    enum class TabStops { each, one };

    /// With `TabStops::one`, Tab enters the group at the control that had the focus last, and the
    /// next Tab leaves the group. `parent` owns this object. `controls` must outlive it.
    ArrowKeys(QList<QWidget *> controls, TabStops tabStops, QObject *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void makeTabStop(const QObject *control);
    bool moveFocus(const QWidget *from, int key);

    QList<QWidget *> m_controls;
    TabStops m_tabStops;
};

} // namespace KestrioKit
