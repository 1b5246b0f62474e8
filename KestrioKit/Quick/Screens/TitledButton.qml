import QtQuick
import KestrioKit

// The base of the buttons with a title that wraps and decides the size of the button.
KestrioButton {
    id: button

    required property KestrioStyle style
    property int horizontalInset: 0
    property int verticalInset: 0
    property int leadingInset: horizontalInset
    property int leastTitleHeight: 0
    property int radius: style.metrics.smallRadius
    property int titleAlignment: Text.AlignLeft
    property int titlePixelSize: style.bodyFont.pixelSize
    property real titleOpacity: 1
    property color titleColor: style.palette.text
    property color ringColor: style.palette.focusRing

    implicitWidth: style.naturalWidth(text, style.bodyFont) + leadingInset + horizontalInset
    implicitHeight: Math.max(title.implicitHeight, leastTitleHeight) + 2 * verticalInset
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.focusable: true
    Accessible.onPressAction: click()

    Text {
        id: title

        z: 1
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: button.leadingInset
        anchors.rightMargin: button.horizontalInset
        y: Math.floor((parent.height - height) / 2)
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        horizontalAlignment: button.titleAlignment
        font.family: button.style.bodyFont.family
        font.pixelSize: button.titlePixelSize
        color: button.titleColor
        opacity: button.titleOpacity
        text: button.text
    }

    Rectangle {
        z: 1
        anchors.fill: parent
        anchors.margins: button.style.metrics.focusRingInset
        visible: button.focusVisible
        radius: button.radius
        color: "transparent"
        border.width: button.style.metrics.focusRingWidth
        border.color: button.ringColor
    }
}
