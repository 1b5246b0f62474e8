import QtQuick
import KestrioKit

// The base of the controls that answer a question. Each type of question has its own.
Item {
    id: container

    required property KestrioStyle style
    required property var question
    // The control that receives the focus when the page is shown; null if there is none.
    property Item firstControl: null

    signal answered(var value)
}
