import QtQuick
import ZNTAds

FeedAdView {
    id: root

    implicitHeight: 24 + (width - 24) * 9 / 16

    FeedPicture {
        id: adImageView
        objectName: "adImageView"
        view: root.view
        x: 12
        y: 12
        width: root.width - 24
        height: root.height - 24

        FeedSourceLabel {
            objectName: "adLabel"
            view: root.view
            x: adImageView.width - 45
            y: adImageView.height - 35
        }

        FeedLogo {
            view: root.view
            x: adImageView.width - 45
            y: adImageView.height - 35
        }
    }

    FeedCloseButton {
        view: root.view
        x: root.width - 34
        y: 12
    }
}
