import QtQuick
import KestrioKit

// One question: its text, and the controls that answer it.
KestrioPage {
    id: page

    required property KestrioStyle style
    required property var question
    readonly property QuestionContentContainer controls: content.item as QuestionContentContainer

    signal answered(var value)

    implicitHeight: titleLabel.height + (controls ? style.metrics.regularPadding + content.height : 0)
    firstControl: controls ? controls.firstControl : null
    title: question.text
    // Qt tells assistive technology of a focus only if the item has a role.
    Accessible.role: Accessible.Grouping
    Component.onCompleted: content.setSource(style.contentView(question.type), {
            "style": style,
            "question": question
        })

    Label {
        id: titleLabel

        style: page.style
        anchors.left: parent.left
        anchors.right: parent.right
        // Keeps the text clear of the close button.
        anchors.rightMargin: page.style.metrics.mediumPadding
        text: page.title
        font: page.style.titleFont
    }

    Loader {
        id: content

        anchors.top: titleLabel.bottom
        anchors.topMargin: page.style.metrics.regularPadding
        width: parent.width
    }

    Connections {
        target: page.controls

        function onAnswered(value) {
            page.answered(value);
        }
    }
}
