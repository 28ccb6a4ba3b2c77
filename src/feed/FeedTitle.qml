import QtQuick
import ZNTAds

// The title of a feed ad.
Label {
    required property ZNTFeedAdView view
    property string placeholder: "广告标题文本"

    objectName: "titleLabel"
    text: view.title.length > 0 ? view.title : placeholder
    fontSize: 16
    bold: true
    lines: 2
    lineHeightMode: Text.FixedHeight
    lineHeight: 20
}
