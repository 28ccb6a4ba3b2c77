import QtQuick
import ZNTAds

FeedAdView {
    id: root

    implicitHeight: 24 + (width - 24) * 9 / 16

    FeedPicture {
        id: adImageView
        objectName: "adImageView"
        x: 12
        y: 12
        width: root.width - 24
        height: root.height - 24
        image: root.content.picture

        FeedSourceLabel {
            id: adLabel
            x: adImageView.width - 45
            y: adImageView.height - 35
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
}
