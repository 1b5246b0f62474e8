import QtQuick
import KestrioKit

// The page that thanks the visitor.
KestrioPage {
    id: page

    required property KestrioStyle style
    required property KestrioFlow flow
    readonly property kestrioMetrics metrics: style.metrics

    implicitHeight: label.y + label.height + metrics.tinyPadding
    title: style.texts.thanks
    // Qt tells assistive technology of a focus only if the item has a role.
    Accessible.role: Accessible.Grouping
    Component.onCompleted: flow.thank()

    ImageView {
        palette: page.style.palette
        anchors.horizontalCenter: parent.horizontalCenter
        y: page.metrics.tinyPadding
        width: page.metrics.thanksCircleSize
        height: page.metrics.thanksCircleSize
        opacity: page.flow.thanksImage
        scale: page.metrics.thanksImageScale + (1 - page.metrics.thanksImageScale) * page.flow.thanksImage
        shape: KestrioPictogram.Thanks
    }

    Label {
        id: label

        style: page.style
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: page.metrics.tinyPadding
        anchors.rightMargin: page.metrics.tinyPadding
        y: page.metrics.tinyPadding + page.metrics.thanksCircleSize + page.metrics.regularPadding
        opacity: page.flow.thanksLabel
        scale: page.metrics.thanksLabelScale + (1 - page.metrics.thanksLabelScale) * page.flow.thanksLabel
        horizontalAlignment: Text.AlignHCenter
        font: page.style.titleFont
        text: page.title
    }
}
