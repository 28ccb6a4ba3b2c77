// Shows where the keyboard focus is. A tap gives no focus: who sees this came by the keyboard.
import QtQuick

Rectangle {
    color: "transparent"
    border.width: 2
    border.color: "#0A84FF"
}
