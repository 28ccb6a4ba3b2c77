// A button with a title. It takes a tap alone, whatever lies under it, and Space, Return and Enter.
import QtQuick

Rectangle {
    property bool hidden: false
    readonly property string viewType: "Button"
    property alias backgroundColor: button.color
    property alias cornerRadius: button.radius
    property alias text: title.text
    property alias textColor: title.textColor
    property alias fontSize: title.fontSize
    property alias bold: title.bold
    // Without it, a tap is taken and does nothing; a disabled item would let the tap through to what
    // lies under it.
    property bool interactive: true
    signal clicked

    function click() {
        if (interactive)
            clicked();
    }
    function pressKey(event) {
        if (!event.isAutoRepeat)
            click();
    }

    id: button
    visible: !hidden
    color: "transparent"
    activeFocusOnTab: true

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.focusable: true
    Accessible.onPressAction: click()
    Keys.onSpacePressed: event => pressKey(event)
    Keys.onReturnPressed: event => pressKey(event)
    Keys.onEnterPressed: event => pressKey(event)

    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        longPressThreshold: 3600 // seconds: however long it is held, a press is a press
        onTapped: button.click()
    }

    Label {
        id: title
        viewType: "" // a part of the button
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
        radius: button.radius + outset
    }
}
