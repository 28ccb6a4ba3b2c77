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
            view: root.view
            width: containerView.width
            height: containerView.height

            FeedSourceLabel {
                objectName: "adLabel"
                view: root.view
                x: 12
                y: 12
            }

            FeedLogo {
                view: root.view
                x: 12
                y: 12
            }
        }

        View {
            objectName: "overlayView"
            y: containerView.height - 45
            width: containerView.width
            height: 45
            backgroundColor: "#80000000"

            FeedTitle {
                view: root.view
                x: 12
                y: 12.5
                width: root.width - 94
                height: 20
                placeholder: "广告标题"
                textColor: "white"
                fontSize: 15
                lines: 1
            }

            Button {
                objectName: "actionButton"
                x: root.width - 82
                y: 7.5
                width: 70
                height: 30
                text: "查看详情"
                fontSize: 13
                backgroundColor: "#0A84FF"
                cornerRadius: 15
                interactive: root.view.interactive
                onClicked: root.view.tapped()
            }
        }
    }

    FeedCloseButton {
        view: root.view
        x: root.width - 32
        y: 10
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
