import QtQuick
import KestrioKit

// The scroll bar at the edge of the card.
Item {
    id: indicator

    required property KestrioStyle style
    required property Flickable area
    readonly property real way: height - thumb.height
    readonly property real maximum: area.contentHeight - area.height

    width: style.metrics.scrollBarBreadth
    visible: maximum > 0

    Rectangle {
        id: thumb

        anchors.horizontalCenter: parent.horizontalCenter
        y: indicator.maximum > 0 ? indicator.way * indicator.area.contentY / indicator.maximum : 0
        width: indicator.style.metrics.scrollThumbBreadth
        height: Math.min(Math.max(parent.height * indicator.area.visibleArea.heightRatio, indicator.style.metrics.leastScrollThumbLength), parent.height)
        radius: width / 2
        color: indicator.style.palette.symbol
    }

    MouseArea {
        property real grip: 0

        anchors.fill: parent
        preventStealing: true
        onPressed: mouse => grip = mouse.y >= thumb.y && mouse.y <= thumb.y + thumb.height ? mouse.y - thumb.y : thumb.height / 2
        onPositionChanged: mouse => indicator.area.contentY = Math.max(0, Math.min((mouse.y - grip) / indicator.way, 1)) * indicator.maximum
    }
}
