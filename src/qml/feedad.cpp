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

QString ZNTFeedAd::adId() const
{
    return d ? d->adData->adId() : QString();
}

QString ZNTFeedAd::title() const
{
    return d ? d->adData->title() : QString();
}

QStringList ZNTFeedAd::imageUrls() const
{
    return d ? d->adData->imageUrls() : QStringList();
}

QString ZNTFeedAd::source() const
{
    return d ? d->adData->source() : QString();
}

QString ZNTFeedAd::sourceLogo() const
{
    return d ? d->adData->sourceLogo() : QString();
}

QString ZNTFeedAd::h5url() const
{
    return d ? d->adData->h5url() : QString();
}

QString ZNTFeedAd::deepLinkUrl() const
{
    return d ? d->adData->deepLinkUrl() : QString();
}

qint64 ZNTFeedAd::style() const
{
    return d ? d->adData->style() : 0;
}

bool ZNTFeedAd::isSeen() const
{
    return d && d->isSeen;
}
