import QtQuick
import KestrioKit

// Two texts at the two ends of a row. Each takes one line if both fit, and otherwise wraps in its own
// column.
Item {
    id: row

    required property KestrioStyle style
    required property string first
    required property string last
    readonly property int firstWidth: style.firstLabelWidth(first, last, width)

    height: Math.max(first ? firstLabel.implicitHeight : 0, last ? lastLabel.implicitHeight : 0)

    Label {
        id: firstLabel

        style: row.style
        anchors.left: parent.left
        width: row.firstWidth
        height: row.height
        text: row.first
    }

    Label {
        id: lastLabel

        style: row.style
        anchors.right: parent.right
        width: row.width - row.style.metrics.tinyPadding - row.firstWidth
        text: row.last
        horizontalAlignment: Text.AlignRight
    }
}
