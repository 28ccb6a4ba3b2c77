import QtQuick
import ZNTAds

// What all feed templates look like: a clear ground.
FeedRoot {
    id: root

    required property ZNTFeedAdView view

    implicitWidth: 375
    focus: true
    activeFocusOnTab: view.interactive

    Accessible.role: Accessible.Link
    Accessible.name: view.title || view.source
    Accessible.description: view.source
    Accessible.focusable: view.interactive
    Accessible.onPressAction: tapped()

    FocusFrame {
        anchors.fill: parent
        z: 1
        visible: root.activeFocus
    }
}
