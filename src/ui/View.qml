// A rectangle of the view tree.
import QtQuick

Rectangle {
    property bool hidden: false
    property alias backgroundColor: view.color
    property alias cornerRadius: view.radius

    id: view
    visible: !hidden
    color: "transparent"
}
