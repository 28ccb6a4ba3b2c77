import QtQuick
import ZNTAds

FeedAdView {
    id: root

    implicitHeight: 195 + titleLabel.height

    FeedTitle {
        id: titleLabel
        x: 15
        y: mainImageView.y + mainImageView.height + 15
        width: root.width - 30
        height: Math.min(implicitHeight, 40)
        text: root.content.text || qsTranslate("ZNTAds", "广告标题")
    }

    FeedPicture {
        id: mainImageView
        objectName: "mainImageView"
        x: 15
        y: 15
        width: root.width - 30
        height: 150
        image: root.content.picture

        FeedSourceLabel {
            id: adLabel
            x: mainImageView.width - 38
            y: mainImageView.height - 28
            content: root.content
        }

        FeedLogo {
            label: adLabel
        }
    }

    Label {
        objectName: "descLabel"
        hidden: true
        height: 0
    }

    FeedCloseButton {
        x: root.width - 37.5
        y: 15
        width: 30
        height: 30
        onClicked: root.part.close()
    }
}
