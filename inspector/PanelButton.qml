import QtQuick

Rectangle {
    id: root

    required property string text
    signal clicked

    implicitWidth: label.implicitWidth + 24
    implicitHeight: 36
    radius: 6
    color: tap.pressed ? "#4a5568" : "#2d3748"
    border { width: activeFocus ? 2 : 0; color: "#63b3ed" }
    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onSpacePressed: clicked()

    Text {
        id: label

        anchors.centerIn: parent
        text: root.text
        color: "white"
        font.pixelSize: 14
    }
    TapHandler {
        id: tap

        onTapped: root.clicked()
    }
}
