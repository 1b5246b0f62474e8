import QtQuick
import KestrioKit

// A plain text that wraps. Marks that extend beyond the line height have room, too.
Text {
    id: label

    required property KestrioStyle style

    height: text ? implicitHeight : 0
    topPadding: style.overhangAbove(text, font)
    bottomPadding: style.overhangBelow(text, font)
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    horizontalAlignment: Text.AlignLeft
    font: style.bodyFont
    color: style.palette.text
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
