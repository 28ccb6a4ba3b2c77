// A screen of some app that is one list.
import QtQuick

Rectangle {
    property alias list: flickable

    width: parent ? parent.width : 0
    height: parent ? parent.height : 0
    color: "white"

    Flickable {
        id: flickable

        anchors.fill: parent
        clip: true
        contentWidth: width
    }
}
