import QtQuick
import ZNTAds

// The advertiser's logo.
ImageView {
    objectName: "logoImageView"
    width: 30
    height: 20
    clip: true
    contentMode: "aspectFit"
}
