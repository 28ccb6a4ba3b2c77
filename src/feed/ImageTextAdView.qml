import QtQuick
import ZNTAds

FeedAdView {
    id: root

    implicitHeight: 196

    FeedPicture {
        id: adImageView
        objectName: "adImageView"
        view: root.view
        x: 12
        y: 12
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

    FeedTitle {
        view: root.view
        x: 12
        y: adImageView.y + adImageView.height + 8
        width: root.width - 24
        height: 44
    }

    Label {
        objectName: "descLabel"
        hidden: true
        height: 0
    }

    FeedCloseButton {
        view: root.view
        x: root.width - 34
        y: 12
    }

    Button {
        objectName: "actionButton"
        hidden: true
        text: "查看详情"
    }
}
