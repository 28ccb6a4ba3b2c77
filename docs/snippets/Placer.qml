pragma ComponentBehavior: Bound
import QtQml.Models
import QtQuick
import ZNTAds

Item {
    id: page
    required property ListModel articles
    required property FeedAds ads

    //! [placer]
    ListView {
        anchors.fill: parent
        clip: true
        model: FeedAdPlacer { sourceModel: page.articles; ads: page.ads; interval: 5 }
        delegate: Loader {
            id: row
            required property var model
            width: ListView.view.width
            sourceComponent: model.isAd ? ad : article

            Component {
                id: ad
                FeedAd {
                    height: implicitHeight
                    adData: row.model.adData
                    onClosed: page.ads.remove(adData)
                }
            }
            Component {
                id: article
                Text { text: row.model.title }
            }
        }
    }
    //! [placer]
}
