import QtQuick
import QtQuick.Controls.Basic

// The check mark is no image, because Qt's software renderer leaks those that are left when the program ends.
CheckBox {
    id: box

    required property string name

    objectName: name
    text: name
    implicitHeight: ShopStyle.controlHeight
    padding: 0
    Accessible.name: name

    indicator: Rectangle {
        y: (box.height - height) / 2
        implicitWidth: ShopStyle.checkBoxSize
        implicitHeight: ShopStyle.checkBoxSize
        border.color: box.visualFocus ? ShopStyle.palette.highlight : ShopStyle.border

        Rectangle {
            anchors.fill: parent
            anchors.margins: ShopStyle.gap
            color: ShopStyle.palette.text
            visible: box.checked
        }
    }
}
