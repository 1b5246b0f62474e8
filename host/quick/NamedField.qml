import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts

TextField {
    required property string name

    objectName: name
    placeholderText: name
    implicitHeight: ShopStyle.controlHeight
    verticalAlignment: TextInput.AlignVCenter
    topPadding: 0
    bottomPadding: 0
    selectByMouse: true
    Accessible.name: name
    Layout.fillWidth: true
    Layout.minimumWidth: ShopStyle.leastFieldWidth
}
