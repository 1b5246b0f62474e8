import QtQuick
import KestrioKit

// A check box with a title, for one of several answers.
TitledButton {
    id: button

    property bool checked: false
    readonly property kestrioMetrics metrics: style.metrics
    readonly property bool marked: pressed && style.palette.keepsContrast

    objectName: style.identifiers.multiSelectOption(text, checked)
    horizontalInset: metrics.optionHorizontalInset
    verticalInset: metrics.optionVerticalInset
    leadingInset: metrics.optionHorizontalInset + metrics.checkBoxSize + metrics.tinyPadding
    leastTitleHeight: metrics.checkBoxSize
    titleOpacity: pressed && !marked ? metrics.pressedCheckBoxOpacity : 1
    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: checked
    onClicked: checked = !checked

    Rectangle {
        anchors.fill: parent
        opacity: button.titleOpacity
        radius: button.radius
        color: button.marked ? button.style.palette.pressedAnswer : "transparent"
        border.width: button.metrics.borderWidth
        border.color: button.style.palette.controlBorder

        Item {
            anchors.left: parent.left
            anchors.leftMargin: button.metrics.optionHorizontalInset
            y: Math.floor((parent.height - height) / 2)
            width: button.metrics.checkBoxSize
            height: button.metrics.checkBoxSize

            KestrioPictogram {
                anchors.fill: parent
                palette: button.style.palette
                shape: KestrioPictogram.UncheckedBox
            }

            KestrioPictogram {
                anchors.fill: parent
                palette: button.style.palette
                shape: KestrioPictogram.CheckedBox
                opacity: button.checked ? 1 : 0

                Behavior on opacity  {
                    enabled: button.style.animated

                    NumberAnimation {
                        duration: button.metrics.checkDuration
                        easing.type: Easing.InOutQuad
                    }
                }
            }
        }
    }
}
