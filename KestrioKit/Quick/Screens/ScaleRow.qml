import QtQuick
import KestrioKit

// Buttons of equal width side by side in one frame, with a line between neighbours.
Rectangle {
    id: row

    required property KestrioStyle style
    required property int firstValue
    required property int lastValue
    required property string firstLabel
    required property string lastLabel
    readonly property kestrioMetrics metrics: style.metrics
    readonly property int count: lastValue - firstValue + 1
    readonly property real room: width - metrics.borderWidth * (count - 1)
    readonly property Item firstControl: keys.first
    readonly property int titleSize: style.scaleFontSize(firstValue, lastValue, Math.floor(room / count) - 2 * metrics.scaleTitleInset, height - 2 * metrics.scaleTitleInset)

    signal chosen(int value)

    implicitHeight: metrics.scaleHeight
    color: "transparent"
    radius: metrics.regularRadius
    border.width: metrics.borderWidth
    border.color: style.palette.controlBorder

    // qmllint disable unqualified
    Repeater {
        model: row.count

        ThemedButton {
            id: button

            required property int index
            readonly property real start: Math.floor(row.room * index / row.count) + row.metrics.borderWidth * index
            readonly property real end: Math.floor(row.room * (index + 1) / row.count) + row.metrics.borderWidth * index

            style: row.style
            objectName: row.style.identifiers.scaleOption(row.firstValue + index)
            text: row.firstValue + index
            description: row.style.radioDescription(index, row.count, row.firstLabel, row.lastLabel)
            titleAlignment: Text.AlignHCenter
            titlePixelSize: row.titleSize
            radius: 0
            x: row.style.mirrored ? row.width - end : start
            width: end - start
            height: row.height
            onClicked: row.chosen(row.firstValue + index)

            Rectangle {
                visible: button.index > 0
                x: row.style.mirrored ? parent.width : -width
                width: row.metrics.borderWidth
                height: parent.height
                color: row.style.palette.controlBorder
            }
        }
    }

    KestrioArrowKeys {
        id: keys

        container: row
        mirrored: row.style.mirrored
        exclusive: true
    }
}
