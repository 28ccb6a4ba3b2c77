// The studio's own window: what to show and how, and what the ad does.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import ZNTAds.Inspector

ApplicationWindow {
    id: root

    readonly property var sizes: [[375, 812], [320, 568], [430, 932], [812, 375], [768, 1024], [1024, 768]]
    readonly property var speeds: [1, 0.25, 0.1, 10]

    function play() {
        studio.play(format.currentIndex, style.currentIndex, position.editText)
    }

    title: qsTr("ZNTAds Studio")
    width: 460
    height: 812
    visible: true

    AdJournal {
        id: journal

        enabled: true
    }
    AdExplanation {
        id: explanation

        active: true
        view: studio.view
    }
    DropArea {
        anchors.fill: parent
        onDropped: drop => {
            if (drop.hasUrls) {
                studio.takeAnswer(drop.urls[0])
                root.play()
            }
        }
    }
    ColumnLayout {
        anchors { fill: parent; margins: 12 }
        spacing: 8

        GridLayout {
            columns: 4
            columnSpacing: 8
            Layout.fillWidth: true

            Label { text: qsTr("Format") }
            ComboBox {
                id: format

                Layout.fillWidth: true
                model: ["splash", "interstitial", "feed"]
                onActivated: {
                    position.editText = currentText
                    root.play()
                }
            }
            Label { text: qsTr("Style") }
            ComboBox {
                id: style

                Layout.fillWidth: true
                enabled: format.currentIndex === 0
                model: [qsTr("plain"), qsTr("shake"), qsTr("slide")]
                onActivated: root.play()
            }

            Label { text: qsTr("Position") }
            ComboBox {
                id: position

                Layout.fillWidth: true
                Layout.columnSpan: 3
                editable: true
                enabled: studio.answerFile === ""
                model: studio.positions
                Component.onCompleted: {
                    currentIndex = model.indexOf("splash")
                    root.play()
                }
                onActivated: root.play()
                onAccepted: root.play()
                Accessible.name: qsTr("Position, template or fault")
            }

            Label { text: qsTr("Size") }
            ComboBox {
                Layout.fillWidth: true
                model: root.sizes.map(size => size[0] + " × " + size[1])
                onActivated: studio.setSize(...root.sizes[currentIndex])
            }
            Label { text: qsTr("Scale") }
            ComboBox {
                readonly property var scales: [1, 1.5, 2, 3]

                Layout.fillWidth: true
                model: scales.map(scale => scale + " ×")
                Component.onCompleted: currentIndex = Math.max(0, scales.indexOf(studio.scale))
                onActivated: studio.setScale(scales[currentIndex])
            }

            Label { text: qsTr("Speed") }
            ComboBox {
                Layout.fillWidth: true
                model: root.speeds.map(speed => speed + " ×")
                onActivated: studio.setSpeed(root.speeds[currentIndex])
            }
        }
        Flow {
            Layout.fillWidth: true
            spacing: 8

            CheckBox { text: qsTr("Notch"); onToggled: studio.setInsets(checked ? 47 : 0, checked ? 34 : 0) }
            CheckBox { text: qsTr("Dark"); onToggled: studio.setDark(checked) }
            CheckBox { text: qsTr("Right to left"); onToggled: studio.setRightToLeft(checked) }
        }
        Flow {
            Layout.fillWidth: true
            spacing: 8

            Button { text: qsTr("Replay"); highlighted: true; onClicked: root.play() }
            Button { text: qsTr("Close the ad"); onClicked: studio.close() }
            Button { text: qsTr("Copy events"); onClicked: clipboard.take(journal.json()) }
            Button { text: qsTr("Clear"); onClicked: journal.clear() }
        }
        Label {
            Layout.fillWidth: true
            wrapMode: Text.Wrap
            text: studio.answerFile === "" ? qsTr("Drag an answer file here to see it.")
                                           : qsTr("Shows %1.").arg(studio.answerFile)
            font.italic: true
        }
        Button {
            visible: studio.answerFile !== ""
            text: qsTr("Back to the exchange")
            onClicked: {
                studio.takeAnswer("")
                root.play()
            }
        }
        Label {
            Layout.fillWidth: true
            visible: text !== ""
            wrapMode: Text.Wrap
            text: studio.message
            color: "#c53030"
        }
        Label {
            Layout.fillWidth: true
            wrapMode: Text.Wrap
            text: explanation.sentence
            textFormat: Text.PlainText
            color: explanation.counts ? "#2f855a" : "#c05621"
        }
        Frame {
            Layout.fillWidth: true
            Layout.fillHeight: true

            ListView {
                id: timeline

                anchors.fill: parent
                clip: true
                model: journal
                onCountChanged: positionViewAtEnd()
                ScrollBar.vertical: ScrollBar { }
                Accessible.name: qsTr("What has happened")

                delegate: Label {
                    required property var model

                    width: ListView.view.width
                    text: Qt.formatTime(new Date(model.time), "HH:mm:ss.zzz") + "  " + model.what + "  " + model.remark
                    textFormat: Text.PlainText
                    elide: Text.ElideRight
                    font.pixelSize: 12
                }
            }
        }
    }
    TextEdit {
        id: clipboard

        function take(content: string) {
            text = content
            selectAll()
            copy()
            text = ""
        }

        visible: false
    }
}
