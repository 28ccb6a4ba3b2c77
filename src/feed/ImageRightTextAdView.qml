import QtQuick
import ZNTAds

FeedAdView {
    id: root

    implicitHeight: 100

    FeedPicture {
        id: adImageView
        objectName: "adImageView"
        x: 12
        y: 0
        width: root.height - 12
        height: root.height
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
        x: root.height + 12
        y: 12
        width: root.width - root.height - 54
        height: root.height - 24
        text: root.content.text || qsTranslate("ZNTAds", "广告标题文本")
    }

    FeedCloseButton {
        x: root.width - 34
        y: 12
        onClicked: root.part.close()
    }
}
