import QtQuick
import KestrioKit

// A field for a text of several lines. It scrolls by its padding, so that the field is one item for
// the focus, for automations and for assistive technology.
TextEdit {
    id: field

    required property KestrioStyle style
    readonly property kestrioMetrics metrics: style.metrics
    readonly property real inset: metrics.textFieldInset
    readonly property real maximumOffset: Math.max(contentHeight + 2 * inset - height, 0)
    property real offset: 0

    function openMenu(x: real, y: real) {
        (menu.createObject(style.layer) as TextMenu).open(x, y);
    }

    height: metrics.textFieldHeight
    clip: true
    leftPadding: inset
    rightPadding: inset
    topPadding: inset - offset
    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap
    selectByMouse: true
    persistentSelection: true
    activeFocusOnTab: true
    horizontalAlignment: style.mirrored ? TextEdit.AlignLeft : undefined
    font: style.bodyFont
    color: style.palette.text
    selectionColor: style.palette.accent
    selectedTextColor: style.palette.textOnAccent
    Accessible.role: Accessible.EditableText
    Accessible.name: style.texts.placeholder
    Accessible.multiLine: true
    Accessible.focusable: true
    Keys.onMenuPressed: openMenu(cursorRectangle.x, cursorRectangle.y + cursorRectangle.height)
    onCursorRectangleChanged: offset = Math.max(0, Math.min(offset + Math.max(cursorRectangle.y + cursorRectangle.height + inset - height, 0) - Math.max(inset - cursorRectangle.y, 0), maximumOffset))

    // qmllint disable unqualified
    cursorDelegate: Item {
        id: caret

        visible: field.cursorVisible

        Rectangle {
            id: line

            x: -width / 2
            width: field.metrics.caretWidth
            height: parent.height
            color: field.style.palette.accent

            Timer {
                running: caret.visible && interval > 0
                repeat: true
                interval: Application.styleHints.cursorFlashTime / 2
                onTriggered: line.visible = !line.visible
                onRunningChanged: line.visible = true
            }
        }
    }

    Rectangle {
        z: -1
        anchors.fill: parent
        radius: field.metrics.smallRadius
        color: field.style.palette.card
    }

    Rectangle {
        anchors.fill: parent
        radius: field.metrics.smallRadius
        color: "transparent"
        border.width: field.activeFocus ? field.metrics.focusedTextFieldBorderWidth : field.metrics.borderWidth
        border.color: field.style.palette.controlBorder
    }

    Label {
        style: field.style
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: field.inset
        anchors.rightMargin: field.inset
        y: field.inset
        visible: field.length === 0 && field.preeditText.length === 0
        text: field.style.texts.placeholder
        color: field.style.palette.secondaryText
    }

    WheelHandler {
        onWheel: event => field.offset = Math.max(0, Math.min(field.offset - event.angleDelta.y / 120 * 3 * field.metrics.scrollLine, field.maximumOffset))
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.RightButton
        cursorShape: Qt.IBeamCursor
        onPressed: mouse => field.openMenu(mouse.x, mouse.y)
    }

    Component {
        id: menu

        TextMenu {
            style: field.style
            target: field
        }
    }
}
