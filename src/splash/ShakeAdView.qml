import QtQuick
import ZNTAds

SplashCreative {
    id: root

    ResourceImage {
        id: phone
        name: "shake_tip_icon"
    }

    View {
        objectName: "shakeHintView"
        x: (root.width - 280) / 2
        y: root.height - 60 - 80
        width: 280
        height: 60
        backgroundColor: Qt.rgba(0, 0, 0, 0.7)
        cornerRadius: 25
        clip: true

        ImageView {
            id: shakeIconView
            objectName: "shakeIconView"
            x: 15
            y: 15
            width: 30
            height: 30
            contentMode: "aspectFit"
            image: phone.image

            transform: Rotation {
                id: swing
                origin.x: shakeIconView.width / 2
                origin.y: shakeIconView.height / 2
                axis { x: 1; y: 0; z: 0 }
            }
            SequentialAnimation {
                running: root.isSeen
                loops: Animation.Infinite
                EasedAnimation { target: swing; property: "angle"; from: -30; to: 30; duration: 1000 }
                EasedAnimation { target: swing; property: "angle"; from: 30; to: -30; duration: 1000 }
            }
        }

        Label {
            objectName: "shakeHintLabel"
            x: shakeIconView.x + shakeIconView.width + 10
            y: 10
            width: 210
            height: 40
            lines: 2
            alignment: Text.AlignHCenter
            fontSize: 15
            textColor: "#FFFFFF"
            text: qsTranslate("ZNTAds", "摇一摇或点击图标\n跳转详情页或第三方应用")
        }
    }
}
