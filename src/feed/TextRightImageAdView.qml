import QtQuick
import ZNTAds

FeedAdView {
    id: root

    implicitHeight: 100

    FeedPicture {
        id: adImageView
        objectName: "adImageView"
        view: root.view
        x: root.width - root.height + 12
        y: 12
        width: root.height - 24
        height: root.height - 24

        FeedSourceLabel {
            objectName: "adLabel"
            view: root.view
            x: adImageView.width - 38
            y: adImageView.height - 28
        }

        FeedLogo {
            view: root.view
            x: adImageView.width - 38
            y: adImageView.height - 28
        }
    }

    FeedTitle {
        view: root.view
        x: 12
        y: 12
        width: root.width - root.height - 24
        height: root.height - 24
    }

    FeedCloseButton {
        view: root.view
        x: root.width - 34
        y: 12
    }

    Label {
        objectName: "descLabel"
        hidden: true
        height: 0
    }
}
