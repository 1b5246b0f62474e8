import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts

// A form for an order: items, address, delivery and the total price.
ColumnLayout {
    id: form

    readonly property int totalCents: coffee.totalCents + biscuits.totalCents + jam.totalCents + bread.totalCents + oil.totalCents + delivery.totalCents

    signal orderPlaced

    spacing: ShopStyle.spacing

    Card {
        heading: "Your basket"

        BasketItem {
            id: coffee

            name: "Coffee, whole beans"
            description: "1 kg, roasted on Monday"
            cents: 1890
            amount: 1
        }

        BasketItem {
            id: biscuits

            name: "Oat biscuits"
            description: "Tin of 24"
            cents: 740
            amount: 2
        }

        BasketItem {
            id: jam

            name: "Blackberry jam"
            description: "From the valley"
            cents: 520
        }

        BasketItem {
            id: bread

            name: "Rye bread"
            description: "Sliced"
            cents: 430
            amount: 1
        }

        BasketItem {
            id: oil

            name: "Olive oil"
            description: "First pressing, 0.5 l"
            cents: 1250
        }
    }

    GridLayout {
        columns: form.width < ShopStyle.wideFormWidth ? 1 : 2
        columnSpacing: ShopStyle.spacing
        rowSpacing: ShopStyle.spacing

        AddressForm {
            Layout.alignment: Qt.AlignTop
            Layout.preferredWidth: 1
        }

        DeliveryForm {
            id: delivery

            Layout.alignment: Qt.AlignTop
            Layout.preferredWidth: 1
        }
    }

    RowLayout {
        Label {
            objectName: "Total"
            text: "Total " + (form.totalCents / 100).toLocaleCurrencyString(Qt.locale("en"), "€")
            font.pixelSize: ShopStyle.totalSize
            font.weight: Font.DemiBold
            Layout.fillWidth: true
        }

        NamedButton {
            name: "Place order"
            text: "&Place order"
            highlighted: true
            onClicked: form.orderPlaced()
        }
    }
}
