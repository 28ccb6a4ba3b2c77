import QtQuick

// Eases in and out along the curve of a cubic Bézier.
NumberAnimation {
    easing.type: Easing.BezierSpline
    easing.bezierCurve: [0.42, 0, 0.58, 1, 1, 1]
}
