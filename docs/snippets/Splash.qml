import QtQuick
import ZNTAds

Item {
    Item { id: logo; height: 80 }
    //! [splash]
    SplashAd {
        mediaId: "my-splash"
        style: SplashAd.Slide
        bottomView: logo
        showWhenLoaded: true
        Component.onCompleted: load()
        onFailed: error => console.log(error.domain, error.code, error.localizedDescription)
    }
    //! [splash]
}
