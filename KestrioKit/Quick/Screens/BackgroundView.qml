import QtQuick
import KestrioKit

// The layer that dims what is behind the card.
KestrioBarrier {
    id: background

    required property KestrioStyle style
    required property KestrioFlow flow

    onTapped: flow.close()

    Rectangle {
        anchors.fill: parent
        color: background.style.palette.dimming
        opacity: background.flow.dimming
    }
}
