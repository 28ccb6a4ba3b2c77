// A list of articles with an ad after each.
import QtQuick

Window {
    id: window

    required property var ads

    width: 375
    height: 812
    visible: true
    title: "A QML host"

    ListView {
        anchors.fill: parent
        model: window.ads
        delegate: Column {
            required property int index

            width: ListView.view.width

            Text {
                width: parent.width
                height: 64
                leftPadding: 12
                verticalAlignment: Text.AlignVCenter
                font.pixelSize: 20
                text: "Article " + (parent.index + 1)
            }
            Item {
                width: parent.width
                height: 200
                Component.onCompleted: window.ads.place(parent.index, this)
            }
        }
    }
}
