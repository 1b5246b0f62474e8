import QtQuick
import KestrioKit

Window {
    id: window

    width: 800
    height: 600
    visible: true
    Component.onCompleted: {
        Kestrio.configure("my-environment");
        Kestrio.presentDebugSurvey(window);
    }

    Connections {
        function onSurveyShown() {
            Qt.exit(0);
        }

        target: Kestrio
    }
}
