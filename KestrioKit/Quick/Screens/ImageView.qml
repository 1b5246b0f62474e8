import KestrioKit

// The picture of the page that thanks the visitor.
KestrioPictogram {
    id: image

    readonly property bool isDecorative: true
}
