import QtQuick
import QtQuick.Controls.Basic

RadioButton {
    required property string name
    required property int cents

    objectName: name
    implicitHeight: ShopStyle.controlHeight
    padding: 0
    text: name + " (" + (cents > 0 ? (cents / 100).toLocaleCurrencyString(Qt.locale("en"), "€") : "free") + ")"
    Accessible.name: name
}
