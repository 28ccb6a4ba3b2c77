// A splash ad at the start, feed ads between the articles, an interstitial before an article.
import QtQuick
import ZNTAds

Window {
    width: 375
    height: 812
    visible: true
    title: "A QML host"

    SplashAd {
        mediaId: "splash"
        showWhenLoaded: true
        Component.onCompleted: load()
    }
    InterstitialAd {
        id: interstitial
        mediaId: "interstitial"
        Component.onCompleted: load()
    }
    FeedAds {
        id: ads
        mediaId: "feed"
        adCount: 9
        Component.onCompleted: load()
    }
    ListModel {
        id: articles
        Component.onCompleted: {
            for (let i = 1; i <= 50; ++i)
                append({ title: "Article " + i })
        }
    }

    ListView {
        anchors.fill: parent
        clip: true
        model: FeedAdPlacer { sourceModel: articles; ads: ads; interval: 4 }
        delegate: Item {
            id: row
            required property var model
            width: ListView.view.width
            height: model.isAd ? ad.height : 64

            Text {
                anchors { fill: parent; leftMargin: 12 }
                verticalAlignment: Text.AlignVCenter
                font.pixelSize: 20
                text: row.model.title ?? ""
                TapHandler { onTapped: if (interstitial.ready) interstitial.show() }
            }
            FeedAd {
                id: ad
                width: parent.width
                height: implicitHeight
                adData: row.model.adData
                onClosed: ads.remove(adData)
            }
        }
    }
}
