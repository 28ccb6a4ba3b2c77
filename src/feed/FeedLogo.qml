import QtQuick
import ZNTAds

// The advertiser's logo, in the place of the label.
ImageView {
    required property FeedSourceLabel label

    objectName: "logoImageView"
    x: label.x
    y: label.y
    width: label.width
    height: label.height
    clip: true
    contentMode: "aspectFit"
    hidden: !label.hidden
    image: label.content.logo
}
