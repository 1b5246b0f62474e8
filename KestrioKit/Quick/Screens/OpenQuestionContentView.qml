import QtQuick

// A text field, and a button that sends its text.
QuestionContentContainer {
    id: view

    firstControl: field
    implicitHeight: button.y + button.height

    TextView {
        id: field

        style: view.style
        objectName: view.style.identifiers.textField
        width: parent.width
    }

    ActionButton {
        id: button

        style: view.style
        objectName: view.style.identifiers.textSubmitButton
        anchors.left: parent.left
        anchors.top: field.bottom
        anchors.topMargin: view.style.metrics.tinyPadding
        text: view.question.actionText
        width: Math.min(implicitWidth, view.width)
        onClicked: {
            // Text that an input method is still composing belongs to the answer.
            view.style.commitComposition();
            forceActiveFocus();
            view.answered(view.style.typedText(field.textDocument));
        }
    }
}
