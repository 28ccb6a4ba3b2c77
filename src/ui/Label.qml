// A text in the middle of its height, on a background of its own. What it shows comes from outside,
// so it is never taken for markup.
import QtQuick

Text {
    property bool hidden: false
    property alias textColor: label.color
    property alias fontSize: label.font.pixelSize
    property alias bold: label.font.bold
    property alias alignment: label.horizontalAlignment
    property alias backgroundColor: background.color
    property alias cornerRadius: background.radius
    property int lines: 1 // at most; 0 for any number

    id: label
    visible: !hidden
    textFormat: Text.PlainText
    color: "black"
    font.family: "Noto Sans CJK SC"
    font.pixelSize: 17
    verticalAlignment: Text.AlignVCenter
    wrapMode: lines === 1 ? Text.NoWrap : Text.Wrap
    maximumLineCount: lines > 0 ? lines : 2147483647
    elide: Text.ElideRight
    // A CJK font asks for half as much again as its glyphs need, and two lines would not fit where
    // two are meant to be.
    lineHeightMode: Text.FixedHeight
    lineHeight: Math.ceil(fontSize * 1.2)

    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Rectangle {
        id: background
        z: -1
        anchors.fill: parent
        color: "transparent"
    }
}
