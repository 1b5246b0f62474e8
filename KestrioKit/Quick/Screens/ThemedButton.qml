import QtQuick

// A button for one answer that excludes the others.
TitledButton {
    id: button

    property int borderWidth: 0
    property string description

    guard: style.pressGuard
    Accessible.role: Accessible.RadioButton
    Accessible.checkable: true
    Accessible.description: description

    Rectangle {
        anchors.fill: parent
        radius: button.radius
        color: button.pressed ? button.style.palette.pressedAnswer : "transparent"
        border.width: button.borderWidth
        border.color: button.style.palette.controlBorder
    }
}
