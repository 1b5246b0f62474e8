import QtQuick
import KestrioKit

// A column of check boxes, and a button that sends the checked ones. Options without an id are never
// part of the answer.
QuestionContentContainer {
    id: view

    property var chosen: ({})

    firstControl: keys.first ? keys.first : submitButton
    function choose(id, isChosen) {
        if (isChosen && id !== null)
            chosen[id] = true;
        else
            delete chosen[id];
    }

    implicitHeight: submitButton.y + submitButton.height

    Column {
        id: column

        readonly property real boxWidth: Math.min(view.style.widestCheckBox(view.question.options), view.width)

        anchors.left: parent.left
        spacing: view.style.metrics.tinyPadding

        // qmllint disable unqualified
        Repeater {
            model: view.question.options.length

            CheckboxButton {
                required property int index
                readonly property var option: view.question.options[index]

                style: view.style
                text: option.label
                width: column.boxWidth
                onCheckedChanged: view.choose(option.id, checked)
            }
        }
    }

    ActionButton {
        id: submitButton

        style: view.style
        objectName: view.style.identifiers.multiSelectSubmitButton
        anchors.left: parent.left
        anchors.top: column.bottom
        anchors.topMargin: view.style.metrics.regularPadding
        text: view.question.actionText
        width: Math.min(implicitWidth, view.width)
        onClicked: view.answered(view.chosen)
    }

    KestrioArrowKeys {
        id: keys

        container: column
        mirrored: view.style.mirrored
    }
}
