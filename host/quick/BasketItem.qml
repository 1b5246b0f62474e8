import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts

// A ware of the shop, and how many of it are ordered.
RowLayout {
    id: item

    required property string name
    required property string description
    required property int cents
    property alias amount: amountBox.value
    readonly property int totalCents: cents * amount

    spacing: ShopStyle.spacing

    ColumnLayout {
        spacing: 0
        Layout.fillWidth: true

        Label {
            text: item.name
        }

        Label {
            text: item.description
            color: ShopStyle.quietText
            elide: Text.ElideRight
            Layout.fillWidth: true
        }
    }

    Label {
        text: (item.cents / 100).toLocaleCurrencyString(Qt.locale("en"), "€")
    }

    SpinBox {
        id: amountBox

        objectName: item.name
        to: 20
        implicitWidth: ShopStyle.amountWidth
        implicitHeight: ShopStyle.controlHeight
        topPadding: 0
        bottomPadding: 0
        Accessible.name: item.name
    }
}
