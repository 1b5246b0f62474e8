// Answers a question on a scale with five values.

ScaleQuestionContentView {
    id: view

    property bool isScale: true
}
