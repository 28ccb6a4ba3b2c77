import QtQuick
import ZNTAds

// The advertiser's logo.
ImageView {
    required property ZNTFeedAdView view

    objectName: "logoImageView"
    width: 30
    height: 20
    clip: true
    hidden: !view.showsLogo
    contentMode: "aspectFit"
    image: view.logo
}
