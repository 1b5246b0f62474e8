import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts

// The window of a shop that uses the library. It shows an order form, and a panel that calls every operation. The
// content scrolls if the window is too small for both.
ApplicationWindow {
    id: window

    width: 1280
    height: 800
    title: "Corner Shop"
    color: ShopStyle.palette.window
    palette.text: ShopStyle.palette.text
    palette.windowText: ShopStyle.palette.windowText
    palette.placeholderText: ShopStyle.palette.placeholderText
    palette.highlight: ShopStyle.palette.highlight
    palette.dark: ShopStyle.palette.highlight

    ScrollView {
        id: scrollArea

        anchors.fill: parent
        clip: true
        contentWidth: availableWidth
        contentHeight: page.implicitHeight + 2 * ShopStyle.margin

        ColumnLayout {
            id: page

            x: ShopStyle.margin
            y: ShopStyle.margin
            width: scrollArea.availableWidth - 2 * ShopStyle.margin
            spacing: ShopStyle.spacing

            Label {
                text: window.title
                font.pixelSize: ShopStyle.titleSize
                font.bold: true
            }

            GridLayout {
                columns: page.width < ShopStyle.wideWidth ? 1 : 2
                columnSpacing: ShopStyle.spacing
                rowSpacing: ShopStyle.spacing

                OrderForm {
                    onOrderPlaced: panel.placeOrder()
                    Layout.alignment: Qt.AlignTop
                    Layout.fillWidth: true
                    Layout.preferredWidth: ShopStyle.formShare
                }

                ControlPanel {
                    id: panel

                    Layout.alignment: Qt.AlignTop
                    Layout.fillWidth: true
                    Layout.preferredWidth: ShopStyle.panelShare
                }
            }
        }
    }
}
