#include "feed/feedclick.h"

#include "ads/clicktarget.h"
#include "ads/tracking.h"

#include <ZNTAds/ZNTFeedAdData.h>

namespace znt {

void followClick(const ZNTFeedAdData &ad, std::function<void()> opened)
{
    reportClick({{}, ad.clickUrl3rd(), ad.dpEventUrls()},
        {.namesUrl = true, .closesClicks = true, .closesDpEvents = true});
    openClickTarget({ad.deepLinkUrl(), ad.h5url()}, std::move(opened));
}

} // namespace znt
