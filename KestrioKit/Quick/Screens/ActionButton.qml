import QtQuick

// The button that sends an answer.
TitledButton {
    id: button

    guard: style.pressGuard
    horizontalInset: style.metrics.regularPadding
    verticalInset: style.metrics.tinyPadding
    titleAlignment: Text.AlignHCenter
    titleColor: style.palette.textOnAccent
    ringColor: style.palette.textOnAccent

    Rectangle {
        anchors.fill: parent
        radius: button.radius
        color: button.style.palette.accent

        Rectangle {
            anchors.fill: parent
            visible: button.pressed
            radius: button.radius
            color: button.style.palette.pressedShade
        }
    }
}
