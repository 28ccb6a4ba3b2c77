// An interstitial ad: the picture in the middle of the dimmed screen.
import QtQuick
import ZNTAds

Item {
    id: root

    required property InterstitialOverlay view
    required property AdContent content
    required property QmlPart part

    focus: true
    KeyNavigation.tab: skipButton.clickable ? skipButton : detailButton
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
            image: root.content.picture

            Accessible.role: Accessible.Link
            Accessible.name: descLabel.text
            Accessible.onPressAction: root.part.tap()

            InputBlocker {
                anchors.fill: parent
                onTapped: root.part.tap()
            }

            // Above the bar, which reaches over the lower part of both.
            ImageView {
                objectName: "logoImageView"
                z: 1
                x: adImageView.width - 48
                y: adImageView.height - 50
                width: 36
                height: 18
                hidden: !root.content.hasLogo
                contentMode: "aspectFit"
                image: root.content.logo
            }

            Label {
                id: adLabel
                objectName: "adLabel"
                z: 1
                x: adImageView.width - 48
                y: adImageView.height - 50
                width: 36
                height: 18
                hidden: root.content.hasLogo
                backgroundColor: Qt.rgba(0, 0, 0, 0.3)
                cornerRadius: 2
                clip: true
                alignment: Text.AlignHCenter
                fontSize: 10
                textColor: "white"
                text: qsTranslate("ZNTAds", "广告")
            }

            Item {
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
                    text: qsTranslate("ZNTAds", "查看详情")
                    onClicked: root.part.tap()

                    KeyNavigation.tab: skipButton.clickable ? skipButton : detailButton
                    KeyNavigation.backtab: skipButton.clickable ? skipButton : detailButton
                }

                Label {
                    id: descLabel
                    objectName: "descLabel"
                    x: 15
                    width: bottomInfoView.width - 115
                    height: 44
                    fontSize: 14
                    textColor: "white"
                    text: root.content.text
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
            clickable: root.view.closable
            Accessible.name: qsTranslate("ZNTAds", "关闭")
            onClicked: root.part.close()

            KeyNavigation.tab: detailButton
            KeyNavigation.backtab: detailButton
        }
    }
}
