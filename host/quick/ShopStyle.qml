pragma Singleton
import QtQuick

// Sizes in pixels, and colours.
QtObject {
    readonly property SystemPalette palette: SystemPalette {
    }
    readonly property color border: "#e2ded5"
    readonly property color quietText: "#666c70"

    readonly property int margin: 16
    readonly property int spacing: 12
    readonly property int gap: 6
    readonly property int radius: 10

    readonly property int titleSize: 22
    readonly property int totalSize: 18
    readonly property int headingSize: 14

    readonly property int controlHeight: 32
    readonly property int amountWidth: 120
    readonly property int checkBoxSize: 24

    // The width from which the form and the panel are side by side.
    readonly property int wideWidth: 900
    // The width from which the address and the delivery are side by side.
    readonly property int wideFormWidth: 600
    // The shares of the width that each gets then.
    readonly property int formShare: 7
    readonly property int panelShare: 5
    readonly property int logHeight: 160
    readonly property int leastFieldWidth: 50
}
