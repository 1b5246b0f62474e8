#pragma once

#include <QQuickItem>

namespace KestrioKit::Quick {

/// An item that a host places itself, in which surveys are shown instead of over the whole window:
/// `Kestrio.presentSurvey(overlay)`. It is empty and lets input through while no survey is shown,
/// and beside the card. Use it on the main thread only.
class SurveyOverlay : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
};

} // namespace KestrioKit::Quick
