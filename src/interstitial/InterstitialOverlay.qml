// The looks of an interstitial ad: the picture in the middle of the dimmed screen.
import QtQuick
import ZNTAds

Item {
    id: root

    required property InterstitialOverlay view

    focus: true
    KeyNavigation.tab: skipButton.interactive ? skipButton : detailButton
    KeyNavigation.backtab: detailButton

    Accessible.role: Accessible.Dialog
    Accessible.name: adLabel.text
    Accessible.description: descLabel.text

    View {
        objectName: "containerView"
        anchors.fill: parent
        backgroundColor: Qt.rgba(0, 0, 0, 0.5)

        ImageView {
            id: adImageView
            objectName: "adImageView"
            x: (root.width - width) * 0.5
            y: (root.height - height) * 0.5
            width: root.width * 0.8
            height: width * 1.2
            clip: true
            cornerRadius: 10
            contentMode: "aspectFill"
            image: root.view.picture

            Accessible.role: Accessible.Link
            Accessible.name: descLabel.text
            Accessible.onPressAction: root.view.clicked()

            InputBlocker {
                anchors.fill: parent
                onTapped: root.view.clicked()
            }

            // Above the bar, which reaches over the lower part of both.
            ImageView {
                objectName: "logoImageView"
                z: 1
                x: adImageView.width - 48
                y: adImageView.height - 50
                width: 36
                height: 18
                hidden: !root.view.hasLogo
                contentMode: "aspectFit"
                image: root.view.logo
            }

            Label {
                id: adLabel
                objectName: "adLabel"
                z: 1
                x: adImageView.width - 48
                y: adImageView.height - 50
                width: 36
                height: 18
                hidden: root.view.hasLogo
                backgroundColor: Qt.rgba(0, 0, 0, 0.3)
                cornerRadius: 2
                clip: true
                alignment: Text.AlignHCenter
                fontSize: 10
                textColor: "white"
                text: "广告"
            }

            Item {
                readonly property string viewType: "View"
                readonly property color backgroundColor: Qt.rgba(0, 0, 0, 0.7)

                id: bottomInfoView
                objectName: "bottomInfoView"
                y: adImageView.height - 44
                width: adImageView.width
                height: 44

                // The picture's corners cut the bar's as well.
                Item {
                    anchors.fill: parent
                    clip: true

                    Rectangle {
                        anchors.fill: parent
                        anchors.topMargin: -radius
                        color: bottomInfoView.backgroundColor
                        radius: adImageView.cornerRadius
                    }
                }

                Button {
                    id: detailButton
                    x: bottomInfoView.width - 90
                    y: 8
                    width: 80
                    height: 28
                    backgroundColor: Qt.rgba(1, 1, 1, 0.2)
                    cornerRadius: 4
                    clip: true
                    fontSize: 12
                    text: "查看详情"
                    onClicked: root.view.clicked()

                    KeyNavigation.tab: skipButton.interactive ? skipButton : detailButton
                    KeyNavigation.backtab: skipButton.interactive ? skipButton : detailButton
                }

                Label {
                    id: descLabel
                    objectName: "descLabel"
                    x: 15
                    width: bottomInfoView.width - 115
                    height: 44
                    fontSize: 14
                    textColor: "white"
                    text: root.view.text
                }
            }
        }

        Button {
            readonly property point place: root.view.reachable(Qt.rect(
                adImageView.x + adImageView.width - 70, adImageView.y + 10, width, height), root.view.safeArea)

            id: skipButton
            objectName: "skipButton"
            x: place.x
            y: place.y
            width: 60
            height: 25
            backgroundColor: Qt.rgba(0, 0, 0, 0.6)
            cornerRadius: 12.5
            clip: true
            fontSize: 13
            text: root.view.closeTitle
            interactive: root.view.closable
            onClicked: root.view.closeRequested()

            KeyNavigation.tab: detailButton
            KeyNavigation.backtab: detailButton
        }
    }
}
