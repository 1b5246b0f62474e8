import QtQuick
import QtQuick.Controls
import KestrioKit

ApplicationWindow {
    id: window

    width: 800
    height: 600
    visible: true
    Component.onCompleted: Kestrio.configure("my-environment")

    Button {
        anchors.centerIn: parent
        text: "Press me"
        onClicked: Kestrio.track("Button Pressed", window.showSurvey)
    }
    function showSurvey(state) {
        if (state === SurveyState.SurveyReady)
            Kestrio.presentSurvey(window);
    }
}
