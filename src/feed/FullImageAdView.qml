import QtQuick
import ZNTAds

FeedAdView {
    id: root

    implicitHeight: 80 + (width - 24) * 9 / 16

    FeedPicture {
        id: adImageView
        objectName: "adImageView"
        x: 12
        y: titleLabel.y + titleLabel.height + 12
        width: root.width - 24
        height: root.height - (titleLabel.y + titleLabel.height) - 24
        image: root.content.picture

        FeedSourceLabel {
            id: adLabel
            x: adImageView.width - 48
            y: adImageView.height - 30
            width: 36
            height: 18
            content: root.content
        }

        FeedLogo {
            label: adLabel
        }
    }

    FeedTitle {
        id: titleLabel
        x: 12
        y: 12
        width: root.width - 124
        height: 44
        text: root.content.text || qsTranslate("ZNTAds", "广告标题文本")
    }

    FeedCloseButton {
        x: root.width - 34
        y: 12
        onClicked: root.part.close()
    }
}
