import QtQuick
import ZNTAds

// Says whose ad it is, where no logo does.
Label {
    required property ZNTFeedAdView view

    objectName: "adLabel"
    width: 30
    height: 20
    clip: true
    fontSize: 10
    textColor: "white"
    backgroundColor: "#4D000000"
    cornerRadius: 2
    alignment: Text.AlignHCenter
    hidden: view.showsLogo
    text: view.source
}
