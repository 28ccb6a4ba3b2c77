#include "feed/templates.h"

#include <ZNTAds/ZNTFullImageAdView.h>
#include <ZNTAds/ZNTImageRightTextAdView.h>
#include <ZNTAds/ZNTImageTextAdView.h>
#include <ZNTAds/ZNTMixedAdView.h>
#include <ZNTAds/ZNTOverlayAdView.h>
#include <ZNTAds/ZNTPureImageAdView.h>
#include <ZNTAds/ZNTTextImageAdView.h>
#include <ZNTAds/ZNTTextRightImageAdView.h>
#include <ZNTAds/ZNTThreeImageAdView.h>

ZNTPureImageAdView::ZNTPureImageAdView(QQuickItem *parent)
    : ZNTFeedAdView(QStringLiteral("PureImageAdView"), parent)
{
}

ZNTImageTextAdView::ZNTImageTextAdView(QQuickItem *parent)
    : ZNTFeedAdView(QStringLiteral("ImageTextAdView"), parent)
{
}

ZNTTextImageAdView::ZNTTextImageAdView(QQuickItem *parent)
    : ZNTFeedAdView(QStringLiteral("TextImageAdView"), parent)
{
}

ZNTFullImageAdView::ZNTFullImageAdView(QQuickItem *parent)
    : ZNTFeedAdView(QStringLiteral("FullImageAdView"), parent)
{
}

ZNTMixedAdView::ZNTMixedAdView(QQuickItem *parent)
    : ZNTFeedAdView(QStringLiteral("MixedAdView"), parent)
{
}

ZNTOverlayAdView::ZNTOverlayAdView(QQuickItem *parent)
    : ZNTFeedAdView(QStringLiteral("OverlayAdView"), parent)
{
}

ZNTThreeImageAdView::ZNTThreeImageAdView(QQuickItem *parent)
    : ZNTFeedAdView(QStringLiteral("ThreeImageAdView"), parent)
{
}

ZNTImageRightTextAdView::ZNTImageRightTextAdView(QQuickItem *parent)
    : ZNTFeedAdView(QStringLiteral("ImageRightTextAdView"), parent)
{
}

ZNTTextRightImageAdView::ZNTTextRightImageAdView(QQuickItem *parent)
    : ZNTFeedAdView(QStringLiteral("TextRightImageAdView"), parent)
{
}

namespace znt {

namespace {

template <class View>
ZNTFeedAdView *create()
{
    return new View;
}

// The position of a template is its number.
constexpr std::array templates{
    create<ZNTPureImageAdView>,
    create<ZNTImageTextAdView>,
    create<ZNTTextImageAdView>,
    create<ZNTFullImageAdView>,
    create<ZNTMixedAdView>,
    create<ZNTOverlayAdView>,
    create<ZNTThreeImageAdView>,
    create<ZNTImageRightTextAdView>,
    create<ZNTTextRightImageAdView>,
};

} // namespace

ZNTFeedAdView *createTemplate(qint64 style)
{
    return style >= 0 && style < qint64(templates.size()) ? templates[size_t(style)]() : nullptr;
}

} // namespace znt
