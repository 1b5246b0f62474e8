import QtQuick
import KestrioKit

// A dot for each page.
KestrioPageDots {
    id: control

    required property KestrioStyle style

    palette: style.palette
    mirrored: style.mirrored
    implicitWidth: count * style.metrics.dotPitch
    implicitHeight: style.metrics.pageControlHeight
    Accessible.role: Accessible.ProgressBar
    Accessible.name: style.texts.position(current + 1, count)
}
