import QtQuick
import ZNTAds

FeedAdView {
    id: root

    implicitHeight: 200

    FeedTitle {
        id: titleLabel
        view: root.view
        x: 12
        y: 12
        width: root.width - 124
        height: 44
    }

    FeedPicture {
        id: adImageView
        objectName: "adImageView"
        view: root.view
        x: 12
        y: titleLabel.y + titleLabel.height + 12
        width: root.width - 24
        height: 120

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
