import QtQuick
import ZNTAds

FeedAdView {
    id: root

    implicitHeight: 90 + (width - 24) / 3

    FeedTitle {
        id: titleLabel
        view: root.view
        x: 12
        y: 12
        width: root.width - 54
        height: 54
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
            view: root.view
            width: imageContainer.pictureWidth
            height: imageContainer.height
        }

        FeedPicture {
            objectName: "imageViews[1]"
            view: root.view
            x: imageContainer.pictureWidth + 8
            width: imageContainer.pictureWidth
            height: imageContainer.height
        }

        FeedPicture {
            objectName: "imageViews[2]"
            view: root.view
            x: 2 * (imageContainer.pictureWidth + 8)
            width: imageContainer.pictureWidth
            height: imageContainer.height
        }

        FeedSourceLabel {
            objectName: "sourceLabel"
            view: root.view
            x: imageContainer.width - 38
            y: imageContainer.height - 28
        }

        FeedLogo {
            view: root.view
            x: imageContainer.width - 38
            y: imageContainer.height - 28
        }
    }

    FeedCloseButton {
        view: root.view
        x: root.width - 34
        y: 12
    }
}
