// What a tour says about the ad, over its foot.
import QtQuick

Rectangle {
    property alias text: label.text

    anchors { left: parent?.left; right: parent?.right; bottom: parent?.bottom; margins: 12 }
    z: 1000000
    visible: text !== ""
    height: label.implicitHeight + 20
    radius: 10
    color: "#d0202428"

    Text {
        id: label

        anchors { fill: parent; margins: 10 }
        color: "white"
        font.pixelSize: 15
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
    }
}
