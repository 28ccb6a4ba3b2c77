#include "qml/feedad.h"

ZNTFeedAd::ZNTFeedAd(const ZNTFeedAdDataPtr &adData, ZNTFeedManager *manager)
{
    if (adData)
        d = std::make_shared<Shared>(Shared{adData, manager});
}

ZNTFeedAdDataPtr ZNTFeedAd::adData() const
{
    return d ? d->adData : nullptr;
}

ZNTFeedManager *ZNTFeedAd::manager() const
{
    return d ? d->manager.data() : nullptr;
}

const ZNTFeedAdData &ZNTFeedAd::record() const
{
    static const ZNTFeedAdData none;
    return d ? *d->adData : none;
}

bool ZNTFeedAd::isSeen() const
{
    return d && d->isSeen;
}
