import QtQuick
import ZNTAds

FeedAdView {
    id: root

    implicitHeight: 200

    FeedTitle {
        id: titleLabel
        x: 12
        y: 12
        width: root.width - 124
        height: 44
        text: root.content.text || qsTranslate("ZNTAds", "广告标题文本")
    }

    FeedPicture {
        id: adImageView
        objectName: "adImageView"
        x: 12
        y: titleLabel.y + titleLabel.height + 12
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

    FeedCloseButton {
        x: root.width - 34
        y: 12
        onClicked: root.part.close()
    }

    Label {
        objectName: "descLabel"
        hidden: true
        height: 0
    }
}
