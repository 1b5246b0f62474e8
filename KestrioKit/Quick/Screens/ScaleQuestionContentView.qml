import QtQuick

// The base of the scales: a button for each number, and a label at each end.
QuestionContentContainer {
    id: view

    firstControl: row.firstControl
    implicitHeight: labels.y + labels.height

    ScaleRow {
        id: row

        style: view.style
        firstValue: view.question.firstValue
        lastValue: view.question.lastValue
        firstLabel: view.question.firstLabel
        lastLabel: view.question.lastLabel
        width: parent.width
        onChosen: value => view.answered(value)
    }

    LabelRow {
        id: labels

        style: view.style
        first: view.question.firstLabel
        last: view.question.lastLabel
        anchors.top: row.bottom
        anchors.topMargin: view.style.metrics.tinyPadding
        width: parent.width
    }
}
