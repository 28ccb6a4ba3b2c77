import QtQuick
import ZNTAds

// The title of a feed ad.
Label {
    objectName: "titleLabel"
    fontSize: 16
    bold: true
    lines: 2
    lineHeightMode: Text.FixedHeight
    lineHeight: 20
}
