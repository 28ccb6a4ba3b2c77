// A button with a title. It takes a tap alone, whatever lies under it, and Space, Return and Enter.
import QtQuick
import ZNTAds

PressArea {
    property bool hidden: false
    property alias backgroundColor: background.color
    property alias cornerRadius: background.radius
    property alias text: title.text
    property alias textColor: title.textColor
    property alias fontSize: title.fontSize
    property alias bold: title.bold
    // Without it, a tap is taken and does nothing.
    property bool clickable: true
    signal clicked

    function click() {
        if (clickable)
            clicked();
    }

    id: button
    visible: !hidden
    interactive: true
    tapsAfterPan: true
    activeFocusOnTab: true
    onTapped: click()

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.focusable: true
    Accessible.onPressAction: click()

    Rectangle {
        id: background
        anchors.fill: parent
        color: "transparent"
    }

    Label {
        id: title
        anchors.fill: parent
        alignment: Text.AlignHCenter
        textColor: "white"
        Accessible.ignored: true
    }

    FocusFrame {
        readonly property int outset: button.clip ? 0 : 3

        anchors.fill: parent
        anchors.margins: -outset
        visible: button.activeFocus
        radius: button.cornerRadius + outset
    }
}
