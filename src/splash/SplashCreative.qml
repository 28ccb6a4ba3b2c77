import QtQuick
import ZNTAds

// What all splash creatives share. A creative's own subviews become children of containerView, above
// the common ones.
Item {
    id: root

    required property SplashContent content
    required property QmlPart part
    readonly property alias skipButton: skipButton
    // A control of the creative's own, if there is one, that Tab reaches before the skip button.
    property Item control: skipButton
    // Whether anything of it can be on screen: animations run only then.
    readonly property bool isSeen: visible && Window.visibility !== Window.Hidden
        && Window.visibility !== Window.Minimized
    default property alias subviews: containerView.data
    readonly property bool picturesDrawn: adImageView.ready && mainAdImageView.ready

    onPicturesDrawnChanged: content.picturesDrawn = picturesDrawn
    Component.onCompleted: content.picturesDrawn = picturesDrawn
    // A key that was meant for the host's own is no click.
    focus: true
    KeyNavigation.tab: ground
    KeyNavigation.backtab: skipButton
    Accessible.role: Accessible.Dialog
    Accessible.name: qsTranslate("ZNTAds", "广告")

    InputBlocker {
        id: ground
        anchors.fill: parent
        activeFocusOnTab: true
        KeyNavigation.tab: root.control
        onTapped: root.part.tap()
        onPanned: (translation, velocity) => root.part.pan(translation, velocity)

        Accessible.role: Accessible.Link
        Accessible.name: viewDetailsLabel.text
        Accessible.description: adContentLabel.text
        Accessible.focusable: true
        Accessible.onPressAction: root.part.tap()
    }

    View {
        id: containerView
        objectName: "containerView"
        anchors.fill: parent

        View {
            objectName: "blurBackgroundView"
            anchors.fill: parent

            // The copy's edges are soft, and the host's own page must not be seen through them.
            Rectangle {
                anchors.fill: parent
                visible: root.content.hasPicture && !root.content.isVideo
                gradient: Gradient {
                    GradientStop { position: 0; color: root.content.groundColors[0] ?? "black" }
                    GradientStop { position: 0.5; color: root.content.groundColors[1] ?? "black" }
                    GradientStop { position: 1; color: root.content.groundColors[2] ?? "black" }
                }
            }

            ImageView {
                id: adImageView
                objectName: "adImageView"
                anchors.fill: parent
                clip: true
                hidden: root.content.isVideo
                contentMode: "aspectFill"
                image: root.content.blurredPicture
            }
        }

        ImageView {
            id: mainAdImageView
            objectName: "mainAdImageView"
            x: (root.width - 0.8 * root.width) / 2
            y: (root.height - 0.48 * root.width) / 2 - 50
            width: 0.8 * root.width
            height: 0.6 * 0.8 * root.width
            clip: true
            cornerRadius: 12
            hidden: root.content.isVideo
            contentMode: "aspectFit"
            image: root.content.picture
        }

        Label {
            id: adContentLabel
            objectName: "adContentLabel"
            x: mainAdImageView.x
            y: mainAdImageView.y + mainAdImageView.height + 20
            width: mainAdImageView.width
            height: 40
            lines: 0
            alignment: Text.AlignHCenter
            bold: true
            fontSize: 20
            textColor: "#000000"
            text: root.content.text
        }

        Label {
            id: viewDetailsLabel
            objectName: "viewDetailsLabel"
            x: mainAdImageView.x
            y: adContentLabel.y + adContentLabel.height + 8
            width: mainAdImageView.width
            height: 20
            alignment: Text.AlignHCenter
            fontSize: 14
            textColor: Qt.rgba(0.5, 0.5, 0.5, 1)
            text: qsTranslate("ZNTAds", "查看详情")
        }
    }

    Loader {
        anchors.fill: parent
        active: root.content.isVideo
        sourceComponent: ImageView {
            clip: true
            contentMode: "aspectFill"
            image: root.content.videoFrame // qmllint disable unqualified
        }
    }

    FocusFrame {
        anchors.fill: parent
        visible: ground.activeFocus
    }

    Button {
        id: skipButton
        objectName: "skipButton"
        x: root.width - 30 - 15
        y: root.content.safeTop + 15
        width: 30
        height: 30
        backgroundColor: Qt.rgba(0, 0, 0, 0.5)
        cornerRadius: 15
        fontSize: 14
        textColor: "#FFFFFF"
        text: root.content.skipTitle
        onClicked: root.part.close()

        KeyNavigation.tab: ground
        Accessible.name: qsTranslate("ZNTAds", "跳过")
    }

    Label {
        objectName: "adLabel"
        x: root.width - 36 - 12
        y: root.height - 18 - 12 - root.content.safeBottom
        width: 36
        height: 18
        hidden: root.content.isVideo || root.content.hasLogo
        backgroundColor: Qt.rgba(0, 0, 0, 0.3)
        cornerRadius: 2
        clip: true
        alignment: Text.AlignHCenter
        fontSize: 10
        textColor: "#FFFFFF"
        text: root.content.source
    }

    ImageView {
        objectName: "logoImageView"
        x: root.width - 36 - 12
        y: root.height - 18 - 12 - root.content.safeBottom
        width: 36
        height: 18
        hidden: root.content.isVideo || !root.content.hasLogo
        contentMode: "aspectFit"
        image: root.content.logo
    }
}
