import QtQuick
import ZNTAds

Item {
    //! [interstitial]
    InterstitialAd {
        id: interstitial
        mediaId: "my-interstitial"
        autoCloseTime: 20
        Component.onCompleted: load()
        onClosed: load() // the next one
    }
    TapHandler {
        onTapped: if (interstitial.ready) interstitial.show()
    }
    //! [interstitial]
}
