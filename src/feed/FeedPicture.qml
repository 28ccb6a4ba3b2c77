import QtQuick
import ZNTAds

// A picture of a feed ad; grey until it has come.
ImageView {
    clip: true
    contentMode: "aspectFill"
    cornerRadius: 4
    backgroundColor: "#F0F1F3"
}
