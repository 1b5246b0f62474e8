import QtQuick

// An entry of the context menu. The one with the focus is marked; so is the one under the pointer.
TitledButton {
    id: entry

    readonly property bool marked: enabled && (activeFocus || pointer.hovered)

    horizontalInset: style.metrics.menuHorizontalInset
    verticalInset: style.metrics.menuVerticalInset
    titleColor: !enabled ? style.palette.secondaryText : marked ? style.palette.textOnAccent : style.palette.text
    ringColor: "transparent"
    Accessible.role: Accessible.MenuItem

    Rectangle {
        anchors.fill: parent
        color: entry.marked ? entry.style.palette.accent : "transparent"
    }

    HoverHandler {
        id: pointer
    }
}
