import QtQuick
import ZNTAds

FeedAdView {
    id: root

    implicitHeight: 195 + titleLabel.height

    FeedTitle {
        id: titleLabel
        view: root.view
        x: 15
        y: mainImageView.y + mainImageView.height + 15
        width: root.width - 30
        height: Math.min(implicitHeight, 40)
        placeholder: "广告标题"
    }

    FeedPicture {
        id: mainImageView
        objectName: "mainImageView"
        view: root.view
        x: 15
        y: 15
        width: root.width - 30
        height: 150

        FeedSourceLabel {
            objectName: "adLabel"
            view: root.view
            x: mainImageView.width - 38
            y: mainImageView.height - 28
        }

        FeedLogo {
            view: root.view
            x: mainImageView.width - 38
            y: mainImageView.height - 28
        }
    }

    Label {
        objectName: "descLabel"
        hidden: true
        height: 0
    }

    FeedCloseButton {
        view: root.view
        x: root.width - 37.5
        y: 15
        width: 30
        height: 30
    }
}
