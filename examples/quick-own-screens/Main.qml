import QtQuick
import QtQuick.Controls
import KestrioKit

// Draws a survey with plain controls, one question at a time.
ApplicationWindow {
    id: window

    property SurveySession session
    property var chosen
    readonly property var question: session?.currentQuestion
    readonly property bool choosesMany: question?.type === SurveyQuestion.MultiSelect

    function choose(option) {
        chosen[option.id] = choosesMany ? !chosen[option.id] : option.value;
        choosesMany || session.answer(chosen);
    }
    // The text of each button, and what it does.
    function buttons() {
        const numbers = [0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10].slice(question.firstValue, question.lastValue && question.lastValue + 1);
        const answers = numbers.map(number => [number, () => session.answer(number)]);
        const options = question.options.map(option => [option.label, () => choose(option)]);
        const submit = [question.actionText, () => session.answer(field.visible ? field.text : chosen)];
        return answers.concat(options, choosesMany || field.visible ? [submit] : []);
    }

    visible: session
    onQuestionChanged: {
        chosen = {};
        field.clear();
        session?.complete ? session.finish() : session?.markSeen();
    }
    Component.onCompleted: {
        Kestrio.configure("my-environment");
        Kestrio.track("Button Pressed", () => session = Kestrio.startSurvey());
    }

    Column {
        Label {
            text: window.session?.complete ? window.session.texts.thanks : window.question?.text ?? ""
        }
        TextArea {
            id: field

            objectName: "answer"
            visible: window.question?.type === SurveyQuestion.Open
        }
        Repeater {
            model: window.question ? window.buttons() : []

            Button {
                required property var modelData

                text: modelData[0]
                onClicked: modelData[1]()
            }
        }
    }
}
