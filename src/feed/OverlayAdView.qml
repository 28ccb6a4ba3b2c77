import QtQuick
import ZNTAds

FeedAdView {
    id: root

    implicitHeight: 24 + (width - 24) * 9 / 16

    View {
        id: containerView
        objectName: "containerView"
        x: 12
        y: 12
        width: root.width - 24
        height: root.height - 24

        FeedPicture {
            objectName: "adImageView"
            width: containerView.width
            height: containerView.height
            image: root.content.picture

            FeedSourceLabel {
                id: adLabel
                x: 12
                y: 12
                content: root.content
            }

            FeedLogo {
                label: adLabel
            }
        }

        View {
            objectName: "overlayView"
            y: containerView.height - 45
            width: containerView.width
            height: 45
            backgroundColor: "#80000000"
            cornerRadius: 4 // the picture's

            FeedTitle {
                x: 12
                y: 12.5
                width: root.width - 94
                height: 20
                rightPadding: 8 // before the button
                textColor: "white"
                fontSize: 15
                lines: 1
                text: root.content.text || qsTranslate("ZNTAds", "广告标题")
            }

            Button {
                objectName: "actionButton"
                x: root.width - 82
                y: 7.5
                width: 70
                height: 30
                text: qsTranslate("ZNTAds", "查看详情")
                fontSize: 13
                backgroundColor: "#0A84FF"
                cornerRadius: 15
                clickable: root.view.interactive
                onClicked: root.part.tap()
            }
        }
    }

    FeedCloseButton {
        x: root.width - 32
        y: 10
        onClicked: root.part.close()
    }

    Label {
        objectName: "priceLabel"
        hidden: true
        height: 0
    }

    Label {
        objectName: "promotionLabel"
        hidden: true
        height: 0
    }

    Label {
        objectName: "descLabel"
        hidden: true
        height: 0
    }
}
