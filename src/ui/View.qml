// A rectangle of the view tree.
import QtQuick

Rectangle {
    property bool hidden: false
    property alias backgroundColor: view.color
    property alias cornerRadius: view.radius
    readonly property string viewType: "View"

    id: view
    visible: !hidden
    color: "transparent"
}
