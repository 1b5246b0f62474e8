import QtQuick
import KestrioKit

// The card. It shows one page at a time, a dot for each question and a close button.
Rectangle {
    id: card

    required property KestrioStyle style
    required property KestrioFlow flow
    readonly property kestrioMetrics metrics: style.metrics
    readonly property KestrioPage page: page.item as KestrioPage
    readonly property Flickable scrollArea: scrollView
    // Where the visible part of the page ends.
    readonly property real pageBottom: scrollView.y + Math.min(scrollView.height, scrollView.contentHeight - scrollView.contentY)
    readonly property int margins: metrics.mediumPadding + metrics.regularPadding + metrics.tinyPadding + pageControl.height
    property real previousHeight: 0

    objectName: style.identifiers.card
    implicitHeight: margins + Math.round(previousHeight + (scrollView.contentHeight - previousHeight) * flow.growth)
    enabled: flow.answerable
    color: style.palette.card
    radius: metrics.cardRadius
    border.width: style.palette.cardBorder.a > 0 ? metrics.borderWidth : 0
    border.color: style.palette.cardBorder
    LayoutMirroring.enabled: style.mirrored
    LayoutMirroring.childrenInherit: true
    Accessible.role: Accessible.Dialog
    Accessible.name: Application.displayName

    ScrollView {
        id: scrollView

        style: card.style
        anchors.fill: parent
        anchors.topMargin: card.metrics.mediumPadding
        anchors.leftMargin: card.metrics.regularPadding
        anchors.rightMargin: card.metrics.regularPadding
        anchors.bottomMargin: card.margins - card.metrics.mediumPadding
        contentHeight: page.height
        enabled: card.flow.pageAnswerable
        opacity: card.flow.containerOpacity

        Loader {
            id: page

            width: scrollView.width
            sourceComponent: card.flow.finished ? thanks : question
        }
    }

    PageControl {
        id: pageControl

        style: card.style
        count: card.flow.pageCount
        current: card.flow.currentPage
        anchors.bottom: parent.bottom
        anchors.bottomMargin: card.metrics.tinyPadding
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(implicitWidth, scrollView.width)
        visible: !card.flow.finished
        opacity: visible ? 1 : 0
    }

    ScrollIndicator {
        style: card.style
        area: scrollView
        anchors.right: parent.right
        anchors.top: scrollView.top
        anchors.bottom: scrollView.bottom
    }

    CloseButton {
        style: card.style
        anchors.top: parent.top
        anchors.right: parent.right
        anchors.topMargin: card.metrics.regularPadding
        anchors.rightMargin: card.metrics.regularPadding
        visible: !card.flow.finished
        opacity: visible ? 1 : 0
        onClicked: card.flow.close()
    }

    // qmllint disable unqualified
    Component {
        id: question

        QuestionView {
            style: card.style
            question: card.flow.question
            opacity: card.flow.pageOpacity
            position: pageControl
            onAnswered: value => card.flow.answer(value)
        }
    }

    Component {
        id: thanks

        FinishSurveyView {
            style: card.style
            flow: card.flow
        }
    }

    Connections {
        target: card.flow

        function onPageLeft() {
            card.previousHeight = scrollView.height;
            page.focus = false;
            page.active = false;
        }

        function onPageChanged() {
            scrollView.contentY = 0;
            page.active = true;
        }
    }
}
