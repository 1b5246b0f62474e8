import QtQuick
import QtQuick.Controls.Basic

Button {
    required property string name

    objectName: name
    text: name
    implicitHeight: ShopStyle.controlHeight
    Accessible.name: name
}
