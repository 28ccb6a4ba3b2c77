// The strip with the app's own name that stays under a splash ad.
import QtQuick

Rectangle {
    color: "white"

    Text {
        anchors.centerIn: parent
        text: "ZNTAds Player"
        color: "#1C1F24"
        font { pixelSize: 20; bold: true }
    }
}
