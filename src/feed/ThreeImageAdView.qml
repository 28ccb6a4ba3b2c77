import QtQuick
import ZNTAds

FeedAdView {
    id: root

    implicitHeight: 90 + (width - 24) / 3

    FeedTitle {
        id: titleLabel
        x: 12
        y: 12
        width: root.width - 54
        height: 54
        text: root.content.text || qsTranslate("ZNTAds", "广告标题文本")
    }

    View {
        id: imageContainer
        objectName: "imageContainer"

        readonly property real pictureWidth: (width - 16) / 3

        x: 12
        y: titleLabel.y + titleLabel.height + 12
        width: root.width - 24
        height: width / 3

        FeedPicture {
            objectName: "imageViews[0]"
            width: imageContainer.pictureWidth
            height: imageContainer.height
            image: root.content.picture
        }

        FeedPicture {
            objectName: "imageViews[1]"
            x: imageContainer.pictureWidth + 8
            width: imageContainer.pictureWidth
            height: imageContainer.height
            image: root.content.picture
        }

        FeedPicture {
            objectName: "imageViews[2]"
            x: 2 * (imageContainer.pictureWidth + 8)
            width: imageContainer.pictureWidth
            height: imageContainer.height
            image: root.content.picture
        }

        FeedSourceLabel {
            id: sourceLabel
            objectName: "sourceLabel"
            x: imageContainer.width - 38
            y: imageContainer.height - 28
            content: root.content
        }

        FeedLogo {
            label: sourceLabel
        }
    }

    FeedCloseButton {
        x: root.width - 34
        y: 12
        onClicked: root.part.close()
    }
}
