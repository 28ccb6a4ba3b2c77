import QtQuick
import ZNTAds

Window {
    width: 375
    height: 812
    visible: true

    ZNTShakeAdView {
        objectName: "creative"
        anchors.fill: parent
    }
    SplashAd { mediaId: "splash" }
    InterstitialAd { mediaId: "interstitial" }
    ListView {
        model: FeedAdPlacer { ads: FeedAds { mediaId: "feed" } }
        delegate: FeedAd {
            required property var model
            adData: model.adData
        }
    }
}
