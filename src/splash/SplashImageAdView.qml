import QtQuick
import ZNTAds

SplashCreative {
    id: root
    control: actionButton

    Label {
        objectName: "actionTipLabel"
        x: (root.width - 200) / 2
        y: root.height - 40 - 50
        width: 200
        height: 40
        backgroundColor: Qt.rgba(0, 0, 0, 0.6)
        cornerRadius: 20
        clip: true
        alignment: Text.AlignHCenter
        fontSize: 14
        textColor: "#FFFFFF"
        text: root.content.hasPicture || root.content.isVideo
            ? qsTranslate("ZNTAds", "点击跳转详情页或第三方应用") : ""
    }

    Button {
        id: actionButton
        objectName: "actionButton"
        y: root.height - 100
        width: root.width
        height: 100
        onClicked: root.part.tap()

        KeyNavigation.tab: root.skipButton
        Accessible.name: qsTranslate("ZNTAds", "点击跳转详情页或第三方应用")
    }
}
