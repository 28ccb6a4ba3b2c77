// A screen of some app: a heading over a few cards that have not loaded yet.
import QtQuick

Rectangle {
    width: parent ? parent.width : 0
    height: parent ? parent.height : 0
    color: "#F2F3F5"

    Rectangle {
        width: parent.width
        height: 88
        color: "white"

        Text {
            x: 20
            y: 44
            text: "Today"
            color: "#1C1F24"
            font { pixelSize: 24; bold: true }
        }
    }
    Column {
        x: 20
        y: 108
        width: parent.width - 40
        spacing: 16

        Repeater {
            model: 6

            Rectangle {
                width: parent.width
                height: 104
                radius: 12
                color: "white"

                Rectangle { x: 16; y: 16; width: 72; height: 72; radius: 8; color: "#E4E7EB" }
                Rectangle { x: 104; y: 24; width: parent.width - 144; height: 14; radius: 7; color: "#E4E7EB" }
                Rectangle { x: 104; y: 50; width: (parent.width - 144) * 0.7; height: 14; radius: 7; color: "#EEF0F2" }
            }
        }
    }
}
