// What the copies of a ZNTFeedAd share.
#pragma once

#include <ZNTAds/ZNTFeedAd.h>
#include <ZNTAds/ZNTFeedManager.h>

#include <QPointer>

struct ZNTFeedAd::Shared
{
    ZNTFeedAdDataPtr adData;
    QPointer<ZNTFeedManager> manager;
    bool isSeen = false;
};
