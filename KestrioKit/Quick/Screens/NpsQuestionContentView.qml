// Answers a question on a scale with eleven values.

ScaleQuestionContentView {
    id: view

    property bool isScale: true
}
