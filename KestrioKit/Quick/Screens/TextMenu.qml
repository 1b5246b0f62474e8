import QtQuick
import KestrioKit

// The context menu of the text target. It lies above the card, and a click beside it closes it.
Item {
    id: menu

    required property KestrioStyle style
    required property TextEdit target
    readonly property list<string> titles: ["&Undo", "&Redo", "Cu&t", "&Copy", "&Paste", "Select All"]
    readonly property list<bool> available: [target.canUndo, target.canRedo, target.selectedText.length > 0, target.selectedText.length > 0, target.canPaste, target.length > 0]

    function open(x: real, y: real) {
        const position = target.mapToItem(parent, x, y);
        panel.x = Math.max(0, Math.min(position.x, width - panel.width));
        panel.y = Math.max(0, Math.min(position.y, height - panel.height));
        keys.focusFirst();
    }

    function close() {
        target.forceActiveFocus(Qt.PopupFocusReason);
        destroy();
    }

    function run(entry: int) {
        close();
        [() => target.undo(), () => target.redo(), () => target.cut(), () => target.copy(), () => target.paste(), () => target.selectAll()][entry]();
    }

    anchors.fill: parent
    Accessible.role: Accessible.PopupMenu
    Keys.onEscapePressed: close()
    Keys.onTabPressed: close()

    KestrioBarrier {
        anchors.fill: parent
        onTapped: menu.close()
    }

    Rectangle {
        id: panel

        width: entries.width + 2 * border.width
        height: entries.height + 2 * border.width
        color: menu.style.palette.card
        border.width: menu.style.metrics.borderWidth
        border.color: menu.style.palette.symbol

        Column {
            id: entries

            x: panel.border.width
            y: panel.border.width

            // qmllint disable unqualified
            Repeater {
                model: menu.titles.length

                MenuEntry {
                    required property int index

                    style: menu.style
                    text: menu.style.withoutMnemonic(qsTranslate("QWidgetTextControl", menu.titles[index]))
                    width: Math.max(implicitWidth, entries.width)
                    enabled: menu.available[index]
                    onClicked: menu.run(index)
                }
            }
        }
    }

    KestrioArrowKeys {
        id: keys

        container: entries
        mirrored: menu.style.mirrored
    }
}
