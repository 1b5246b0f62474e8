import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts

// A white card with a heading and controls below one another.
Rectangle {
    id: card

    required property string heading
    default property alias controls: column.data

    implicitWidth: column.implicitWidth + 2 * ShopStyle.margin
    implicitHeight: column.implicitHeight + 2 * ShopStyle.margin
    color: ShopStyle.palette.base
    border.color: ShopStyle.border
    radius: ShopStyle.radius
    Layout.fillWidth: true

    ColumnLayout {
        id: column

        anchors.fill: parent
        anchors.margins: ShopStyle.margin
        spacing: ShopStyle.gap

        Label {
            text: card.heading
            font.pixelSize: ShopStyle.headingSize
            font.weight: Font.DemiBold
        }
    }
}
