import QtQuick
import QtQuick.Controls.Basic

Card {
    readonly property int totalCents: (choices.checkedButton as DeliveryChoice).cents + (giftWrapping.checked ? giftWrapping.cents : 0)

    heading: "Delivery"

    ButtonGroup {
        id: choices

        buttons: [collecting, post, bicycle]
    }

    DeliveryChoice {
        id: collecting

        name: "Collect in the shop"
        cents: 0
        checked: true
    }

    DeliveryChoice {
        id: post

        name: "By post, 2 days"
        cents: 490
    }

    DeliveryChoice {
        id: bicycle

        name: "By bicycle, today"
        cents: 890
    }

    NamedCheckBox {
        id: giftWrapping

        readonly property int cents: 250

        name: "Gift wrapping"
        text: "Gift wrapping (€2.50)"
    }

    NamedField {
        name: "Voucher"
    }
}
