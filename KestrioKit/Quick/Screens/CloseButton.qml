import QtQuick
import KestrioKit

// The round button that closes the survey.
KestrioButton {
    id: button

    required property KestrioStyle style
    readonly property bool marked: pressed && style.palette.keepsContrast

    objectName: style.identifiers.closeButton
    text: style.texts.close
    width: style.metrics.closeButtonSize
    height: style.metrics.closeButtonSize
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.focusable: true
    Accessible.onPressAction: click()

    Rectangle {
        anchors.fill: parent
        opacity: button.pressed && !button.marked ? button.style.metrics.pressedCloseButtonOpacity : 1
        radius: width / 2
        color: button.marked ? button.style.palette.pressedAnswer : button.style.palette.card
        border.width: button.style.metrics.borderWidth
        border.color: button.style.palette.symbol

        KestrioPictogram {
            anchors.fill: parent
            palette: button.style.palette
            shape: KestrioPictogram.Cross
        }
    }

    Rectangle {
        anchors.fill: parent
        anchors.margins: button.style.metrics.focusRingInset
        visible: button.focusVisible
        radius: button.width / 2
        color: "transparent"
        border.width: button.style.metrics.focusRingWidth
        border.color: button.style.palette.text
    }
}
