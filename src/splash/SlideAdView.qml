import QtQuick
import ZNTAds

SplashCreative {
    id: root

    ResourceImage {
        id: arc
        name: "slide_icon_bg"
    }
    ResourceImage {
        id: direction
        name: "slide_icon_direction"
    }
    ResourceImage {
        id: finger
        name: "slide_icon_finger"
    }

    View {
        objectName: "slideHintView"
        x: (root.width - 200) / 2
        y: root.height - root.content.safeBottom - 50 - 45
        width: 200
        height: 50

        Label {
            id: slideHintTopLabel
            objectName: "slideHintTopLabel"
            y: 1.5
            width: 200
            height: 22
            alignment: Text.AlignHCenter
            fontSize: 14
            textColor: "#FFFFFF"
            text: root.content.hasPicture ? qsTranslate("ZNTAds", "滑动屏幕或点击图标") : ""
        }

        Label {
            objectName: "slideHintBottomLabel"
            y: slideHintTopLabel.y + slideHintTopLabel.height + 3
            width: 200
            height: 22
            alignment: Text.AlignHCenter
            fontSize: 14
            textColor: "#FFFFFF"
            text: root.content.hasPicture ? qsTranslate("ZNTAds", "跳转详情页或第三方应用") : ""
        }
    }

    // It breathes on behalf of the picture, whose own opacity does not change.
    Item {
        id: breath
        anchors.fill: parent

        ImageView {
            objectName: "bgImageView"
            y: root.height - height / 2 - root.content.safeBottom
            width: root.width
            height: arc.naturalSize.height > 0 ? root.width / (arc.naturalSize.width / arc.naturalSize.height) : 0
            contentMode: "scaleToFill"
            image: arc.image
        }
        SequentialAnimation {
            running: root.isSeen
            loops: Animation.Infinite
            EasedAnimation { target: breath; property: "opacity"; from: 0.6; to: 1; duration: 1000 }
            EasedAnimation { target: breath; property: "opacity"; from: 1; to: 0.6; duration: 1000 }
        }
    }

    View {
        id: slideIndicatorContainer
        objectName: "slideIndicatorContainer"
        x: (root.width - width) * 0.5
        y: root.height * 0.67
        width: direction.naturalSize.width
        height: direction.naturalSize.height

        ImageView {
            objectName: "slideIconView"
            anchors.fill: parent
            contentMode: "center"
            image: direction.image
        }

        ImageView {
            id: slideFingerView
            objectName: "slideFingerView"
            x: (slideIndicatorContainer.width - width) * 0.5
            y: (slideIndicatorContainer.height - height) * 0.5
            width: slideIndicatorContainer.height / 5
            height: width
            contentMode: "aspectFit"
            image: finger.image

            // Its top left corner goes from the middle of the direction picture to the left and
            // back, then down, right and up: one arm of the cross every two eighths of the way.
            transform: Translate {
                id: trace
                property real eighths: 0
                readonly property real arm: 0.2 * slideIndicatorContainer.width

                function away(turn: real): real {
                    return arm * Math.max(0, 1 - Math.abs(eighths - turn));
                }

                x: slideFingerView.width / 2 + away(5) - away(1)
                y: slideFingerView.height / 2 + away(3) - away(7)
            }
            EasedAnimation {
                running: root.isSeen
                loops: Animation.Infinite
                target: trace
                property: "eighths"
                from: 0
                to: 8
                duration: 4000
            }
        }
    }
}
