import QtQuick
import ZNTAds

// The round button that closes a feed ad.
Button {
    objectName: "closeButton"
    width: 22
    height: 22
    text: "×"
    fontSize: 16
    backgroundColor: "#4D000000"
    cornerRadius: 11
    Accessible.name: qsTranslate("ZNTAds", "关闭广告")
}
