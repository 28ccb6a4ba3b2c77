import QtQuick
import ZNTAds

// What all feed templates share: a clear ground.
FeedRoot {
    id: root

    required property ZNTFeedAdView view
    required property AdContent content
    required property QmlPart part

    implicitWidth: 375
    focus: true
    activeFocusOnTab: view.interactive

    Accessible.role: Accessible.Link
    Accessible.name: content.text || content.source
    Accessible.description: content.source
    Accessible.focusable: view.interactive
    Accessible.onPressAction: part.tap()
    interactive: view.interactive
    onTapped: part.tap()
    onCloseRequested: part.close()

    FocusFrame {
        anchors.fill: parent
        z: 1
        visible: root.activeFocus
    }
}
