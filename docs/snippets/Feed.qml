pragma ComponentBehavior: Bound
import QtQuick
import ZNTAds

Item {
    //! [feed]
    FeedAds {
        id: ads
        mediaId: "my-feed"
        adCount: 5
        Component.onCompleted: load()
    }
    ListView {
        anchors.fill: parent
        clip: true
        model: ads
        delegate: FeedAd {
            required property var model
            width: ListView.view.width
            height: implicitHeight
            adData: model.adData
            onClosed: ads.remove(adData)
        }
    }
    //! [feed]
}
