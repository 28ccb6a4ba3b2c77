import QtQuick
import ZNTAds

// A picture of a feed ad; grey until it has come.
ImageView {
    id: picture
    clip: true
    contentMode: "aspectFill"
    cornerRadius: 4

    // As the view's own background it would take the memory of a picture.
    Rectangle {
        z: -1
        anchors.fill: parent
        visible: !(picture.hasImage && picture.ready)
        radius: picture.cornerRadius
        color: "#F0F1F3"
    }
}
