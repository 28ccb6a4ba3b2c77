import QtQuick
import ZNTAds.Inspector

// Fills the item or window that it is put into, and lets through what does not hit its panel.
Item {
    id: root

    property bool open: false

    readonly property string selected: list.currentItem ? list.currentItem.adId : ""

    function copy() {
        clipboard.text = journal.json()
        clipboard.selectAll()
        clipboard.copy()
        clipboard.text = ""
    }

    anchors.fill: parent
    z: 1000000

    AdJournal {
        id: journal

        enabled: true
    }
    InspectedAds {
        id: ads

        journal: journal
    }
    AdEvents {
        id: events

        sourceModel: journal
        adId: root.selected
    }
    AdExplanation {
        id: explanation

        active: root.open
        view: list.currentItem ? list.currentItem.view : null
    }
    Shortcut {
        sequence: "F12"
        onActivated: root.open = !root.open
    }
    TextEdit {
        id: clipboard

        visible: false
    }

    // The outline of each ad that is on screen.
    Repeater {
        model: root.open ? ads : 0

        Rectangle {
            id: outline

            required property string adId
            required property Item view
            required property double share

            function follow() {
                const known = ads.viewOf(adId)
                visible = known !== null && known.visible
                if (!visible)
                    return
                const place = root.mapFromItem(known, 0, 0, known.width, known.height)
                x = place.x
                y = place.y
                width = place.width
                height = place.height
            }

            color: "transparent"
            border {
                width: adId === root.selected ? 3 : 1
                color: share >= explanation.ratio ? "#38a169" : "#e53e3e"
            }
            Component.onCompleted: follow()

            Timer {
                interval: 100
                running: root.open
                repeat: true
                onTriggered: outline.follow()
            }
        }
    }

    PanelButton {
        anchors { right: parent.right; bottom: parent.bottom; margins: 8 }
        visible: !root.open
        opacity: 0.85
        text: qsTr("Ads")
        Accessible.description: qsTr("Opens the inspector of ads")
        onClicked: root.open = true
    }

    Rectangle {
        id: panel

        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        visible: root.open
        height: Math.min(root.height, Math.max(260, root.height * 0.55))
        color: "#f01a202c"
        Accessible.role: Accessible.Pane
        Accessible.name: qsTr("Inspector of ads")
        Keys.onEscapePressed: root.open = false

        MouseArea { // what hits the panel goes no further
            anchors.fill: parent
            onWheel: wheel => wheel.accepted = true
        }

        Row {
            id: head

            anchors { left: parent.left; right: parent.right; top: parent.top; margins: 8 }
            spacing: 8

            Text {
                width: head.width - buttons.width - head.spacing
                height: buttons.height
                verticalAlignment: Text.AlignVCenter
                text: qsTr("Ads: %1 · events: %2").arg(ads.count).arg(journal.count)
                color: "white"
                font { pixelSize: 16; bold: true }
                elide: Text.ElideRight
            }
            Row {
                id: buttons

                spacing: 8

                PanelButton { text: qsTr("Copy"); Accessible.description: qsTr("All events as JSON"); onClicked: root.copy() }
                PanelButton { text: qsTr("Clear"); onClicked: journal.clear() }
                PanelButton { text: qsTr("Close"); onClicked: root.open = false }
            }
        }

        ListView {
            id: list

            anchors { left: parent.left; right: parent.right; top: head.bottom; margins: 8 }
            height: Math.min(contentHeight, panel.height * 0.35)
            clip: true
            model: ads
            activeFocusOnTab: true
            keyNavigationEnabled: true
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Ads of this run")

            delegate: Rectangle {
                id: row

                required property int index
                required property string adId
                required property string format
                required property string latest
                required property Item view
                required property double share

                width: ListView.view.width
                height: 32
                radius: 4
                color: ListView.isCurrentItem ? "#2c5282" : "transparent"
                border { width: ListView.isCurrentItem && list.activeFocus ? 2 : 0; color: "#63b3ed" }
                Accessible.role: Accessible.ListItem
                Accessible.name: qsTr("%1 ad %2, %3, %4 percent visible").arg(format).arg(adId).arg(latest).arg(Math.round(share))

                Text {
                    anchors { left: parent.left; right: bar.left; verticalCenter: parent.verticalCenter; margins: 8 }
                    text: row.format + " · " + row.adId + " · " + row.latest
                    color: "white"
                    font.pixelSize: 13
                    elide: Text.ElideRight
                }
                Rectangle { // how much is visible, with a mark at what is needed
                    id: bar

                    anchors { right: parent.right; rightMargin: 8; verticalCenter: parent.verticalCenter }
                    width: 80
                    height: 8
                    color: "#4a5568"

                    Rectangle {
                        width: row.view ? parent.width * row.share / 100 : 0
                        height: parent.height
                        color: row.share >= explanation.ratio ? "#48bb78" : "#f56565"
                    }
                    Rectangle {
                        x: parent.width * explanation.ratio / 100 - 1
                        y: -2
                        width: 2
                        height: parent.height + 4
                        color: "white"
                    }
                }
                TapHandler {
                    onTapped: {
                        list.currentIndex = row.index
                        list.forceActiveFocus()
                    }
                }
            }
        }

        Text {
            id: sentence

            anchors { left: parent.left; right: parent.right; top: list.bottom; margins: 8 }
            text: ads.count === 0 ? qsTr("No ad has done anything yet.")
                : explanation.view ? explanation.sentence
                : qsTr("This ad has no view on screen.")
            textFormat: Text.PlainText
            color: explanation.counts ? "#9ae6b4" : "#feb2b2"
            font.pixelSize: 13
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        ListView {
            id: timeline

            anchors { left: parent.left; right: parent.right; top: sentence.bottom; bottom: parent.bottom; margins: 8 }
            clip: true
            model: events
            activeFocusOnTab: true
            onCountChanged: positionViewAtEnd()
            Accessible.role: Accessible.List
            Accessible.name: qsTr("What has happened to it")

            delegate: Text {
                required property var model
                readonly property string what: model.what

                width: ListView.view.width
                text: Qt.formatTime(new Date(model.time), "HH:mm:ss.zzz") + "  " + model.what + "  " + model.remark
                textFormat: Text.PlainText
                color: what === "failed" || what === "refused" || what === "tracker failed" ? "#feb2b2" : "#e2e8f0"
                font.pixelSize: 12
                elide: Text.ElideRight
            }
        }
    }
}
