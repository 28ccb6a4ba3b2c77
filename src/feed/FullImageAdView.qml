import QtQuick
import ZNTAds

FeedAdView {
    id: root

    implicitHeight: 80 + (width - 24) * 9 / 16

    FeedPicture {
        id: adImageView
        objectName: "adImageView"
        view: root.view
        x: 12
        y: titleLabel.y + titleLabel.height + 12
        width: root.width - 24
        height: root.height - (titleLabel.y + titleLabel.height) - 24

        FeedSourceLabel {
            objectName: "adLabel"
            view: root.view
            x: adImageView.width - 48
            y: adImageView.height - 30
            width: 36
            height: 18
        }

        FeedLogo {
            view: root.view
            x: adImageView.width - 48
            y: adImageView.height - 30
            width: 36
            height: 18
        }
    }

    FeedTitle {
        id: titleLabel
        view: root.view
        x: 12
        y: 12
        width: root.width - 124
        height: 44
    }

    FeedCloseButton {
        view: root.view
        x: root.width - 34
        y: 12
    }
}
