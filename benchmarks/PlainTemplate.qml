import QtQuick
import ZNTAds

// The picture and the title of a feed ad, as one would write them without the library's templates.
Item {
    id: root

    property string title
    property string source
    signal tapped
    signal closeRequested

    activeFocusOnTab: true
    Accessible.role: Accessible.Link
    Accessible.name: title
    Accessible.description: source
    Accessible.focusable: true
    Accessible.onPressAction: tapped()

    TapHandler {
        onTapped: root.tapped()
    }

    Rectangle {
        anchors.fill: parent
        z: 1
        visible: root.activeFocus
        color: "transparent"
        border.width: 2
        border.color: "#0A84FF"
    }

    ImageView {
        id: adImageView
        x: 12
        width: root.height - 12
        height: root.height
        clip: true
        contentMode: "aspectFill"
        cornerRadius: 4

        Rectangle {
            z: -1
            anchors.fill: parent
            visible: !(adImageView.hasImage && adImageView.ready)
            radius: adImageView.cornerRadius
            color: "#F0F1F3"
        }

        Label {
            x: adImageView.width - 38
            y: adImageView.height - 28
            width: 30
            height: 20
            clip: true
            text: root.source
            fontSize: 10
            textColor: "white"
            backgroundColor: "#4D000000"
            cornerRadius: 2
            alignment: Text.AlignHCenter
        }

        ImageView {
            x: adImageView.width - 38
            y: adImageView.height - 28
            width: 30
            height: 20
            clip: true
            contentMode: "aspectFit"
            hidden: true
        }
    }

    Label {
        x: root.height + 12
        y: 12
        width: root.width - root.height - 54
        height: root.height - 24
        text: root.title
        fontSize: 16
        bold: true
        lines: 2
        lineHeightMode: Text.FixedHeight
        lineHeight: 20
    }

    Button {
        x: root.width - 34
        y: 12
        width: 22
        height: 22
        text: "×"
        fontSize: 16
        backgroundColor: "#4D000000"
        cornerRadius: 11
        onClicked: root.closeRequested()
        Accessible.name: "关闭广告"
    }
}
