import QtQuick
import ZNTAds

// The round button that closes a feed ad.
Button {
    required property ZNTFeedAdView view

    objectName: "closeButton"
    width: 22
    height: 22
    text: "×"
    fontSize: 16
    backgroundColor: "#4D000000"
    cornerRadius: 11
    onClicked: view.closeRequested()
    Accessible.name: "关闭广告"
}
