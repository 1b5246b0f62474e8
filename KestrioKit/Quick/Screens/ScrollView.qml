import QtQuick
import KestrioKit

// Scrolls a page that is higher than the room for it.
Flickable {
    id: view

    required property KestrioStyle style

    clip: true
    contentWidth: width
    boundsBehavior: Flickable.StopAtBounds
    interactive: contentHeight > height
}
