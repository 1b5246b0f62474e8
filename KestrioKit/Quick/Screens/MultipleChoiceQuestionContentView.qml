import QtQuick
import KestrioKit

// A column of options, one of which is the answer. An option without an id does nothing.
QuestionContentContainer {
    id: view

    firstControl: keys.first
    implicitHeight: column.height

    Column {
        id: column

        width: parent.width
        spacing: view.style.metrics.tinyPadding

        // qmllint disable unqualified
        Repeater {
            model: view.question.options.length

            ThemedButton {
                required property int index
                readonly property var option: view.question.options[index]

                style: view.style
                objectName: view.style.identifiers.multipleChoiceOption(text)
                text: option.label
                description: view.style.radioDescription(index, view.question.options.length, "", "")
                borderWidth: view.style.metrics.borderWidth
                horizontalInset: view.style.metrics.optionHorizontalInset
                verticalInset: view.style.metrics.optionVerticalInset
                width: column.width
                onClicked: if (option.id !== null)
                    view.answered({
                            [option.id]: option.value
                        })
            }
        }
    }

    KestrioArrowKeys {
        id: keys

        container: column
        mirrored: view.style.mirrored
        exclusive: true
    }
}
