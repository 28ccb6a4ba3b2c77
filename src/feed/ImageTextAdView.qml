import QtQuick
import ZNTAds

FeedAdView {
    id: root

    implicitHeight: 196

    FeedPicture {
        id: adImageView
        objectName: "adImageView"
        x: 12
        y: 12
        width: root.width - 24
        height: 120
        image: root.view.picture

        FeedSourceLabel {
            id: adLabel
            x: adImageView.width - 38
            y: adImageView.height - 28
            view: root.view
        }

        FeedLogo {
            label: adLabel
        }
    }

    FeedTitle {
        x: 12
        y: adImageView.y + adImageView.height + 8
        width: root.width - 24
        height: 44
        text: root.view.title || "广告标题文本"
    }

    Label {
        objectName: "descLabel"
        hidden: true
        height: 0
    }

    FeedCloseButton {
        x: root.width - 34
        y: 12
        onClicked: root.closeRequested()
    }

    Button {
        objectName: "actionButton"
        hidden: true
        text: "查看详情"
    }
}
