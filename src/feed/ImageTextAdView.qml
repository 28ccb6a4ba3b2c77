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
        image: root.content.picture

        FeedSourceLabel {
            id: adLabel
            x: adImageView.width - 38
            y: adImageView.height - 28
            content: root.content
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
        text: root.content.text || qsTranslate("ZNTAds", "广告标题文本")
    }

    Label {
        objectName: "descLabel"
        hidden: true
        height: 0
    }

    FeedCloseButton {
        x: root.width - 34
        y: 12
        onClicked: root.part.close()
    }

    Button {
        objectName: "actionButton"
        hidden: true
        text: qsTranslate("ZNTAds", "查看详情")
    }
}
