import QtQuick

Card {
    heading: "Address"

    NamedField {
        name: "Name"
    }

    NamedField {
        name: "Street and number"
    }

    NamedField {
        name: "Postcode and town"
    }

    NamedField {
        name: "Telephone"
    }
}
