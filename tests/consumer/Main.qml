import QtQuick
import ZNTAds

Window {
    width: 375
    height: 812
    visible: true

    ZNTShakeAdView {
        objectName: "creative"
        anchors.fill: parent
    }
}
