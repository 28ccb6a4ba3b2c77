import QtQuick
import ZNTAds

// Says whose ad it is, where no logo does.
Label {
    required property AdContent content

    objectName: "adLabel"
    width: 30
    height: 20
    clip: true
    fontSize: 10
    textColor: "white"
    backgroundColor: "#4D000000"
    cornerRadius: 2
    alignment: Text.AlignHCenter
    hidden: content.hasLogo
    text: content.source
}
