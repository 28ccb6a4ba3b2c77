#include <ZNTAds/ZNTFeedAds.h>

#include <ZNTAds/ZNTFeedManager.h>

#include <QPointer>

#include <algorithm>

struct ZNTFeedAds::Private
{
    explicit Private(ZNTFeedAds *model)
        : q(model)
    {
    }

    void takeLoaded(const QList<ZNTFeedAdDataPtr> &records);
    void takeFailure(const ZNTError &failure);
    // Emits only while the model lives.
    void tell(std::initializer_list<void (ZNTFeedAds::*)()> signalsToEmit) const;

    ZNTFeedAds *const q;
    ZNTFeedManager manager;
    QList<ZNTFeedAd> ads;
    int pending = 0;
    ZNTError error;
};

ZNTFeedAds::ZNTFeedAds(QObject *parent)
    : QAbstractListModel(parent)
    , d(std::make_unique<Private>(this))
{
    connect(&d->manager, &ZNTFeedManager::mediaIdChanged, this, &ZNTFeedAds::mediaIdChanged);
    connect(&d->manager, &ZNTFeedManager::adCountChanged, this, &ZNTFeedAds::adCountChanged);
    connect(&d->manager, &ZNTFeedManager::loaded, this,
        [this](const QList<ZNTFeedAdDataPtr> &records) { d->takeLoaded(records); });
    connect(&d->manager, &ZNTFeedManager::failed, this,
        [this](const ZNTError &error) { d->takeFailure(error); });
}

ZNTFeedAds::~ZNTFeedAds() = default;

void ZNTFeedAds::load()
{
    ++d->pending;
    d->error = {};
    const QPointer<ZNTFeedAds> self(this);
    d->tell({&ZNTFeedAds::loadingChanged, &ZNTFeedAds::errorChanged});
    if (self)
        d->manager.loadAdData();
}

void ZNTFeedAds::Private::takeLoaded(const QList<ZNTFeedAdDataPtr> &records)
{
    pending = std::max(pending - 1, 0); // the host may load by the manager
    const QPointer<ZNTFeedAds> self(q);
    q->beginResetModel();
    ads.clear();
    for (const ZNTFeedAdDataPtr &record : records)
        ads.append(ZNTFeedAd(record, &manager));
    q->endResetModel();
    if (self)
        tell({&ZNTFeedAds::countChanged, &ZNTFeedAds::loadingChanged, &ZNTFeedAds::loaded});
}

void ZNTFeedAds::Private::takeFailure(const ZNTError &failure)
{
    pending = std::max(pending - 1, 0);
    error = failure;
    const QPointer<ZNTFeedAds> self(q);
    tell({&ZNTFeedAds::loadingChanged, &ZNTFeedAds::errorChanged});
    if (self)
        Q_EMIT self->failed(failure);
}

void ZNTFeedAds::Private::tell(std::initializer_list<void (ZNTFeedAds::*)()> signalsToEmit) const
{
    const QPointer<ZNTFeedAds> self(q);
    for (const auto signal : signalsToEmit) {
        if (self)
            Q_EMIT(self->*signal)();
    }
}

ZNTFeedAd ZNTFeedAds::get(int row) const
{
    return d->ads.value(row);
}

bool ZNTFeedAds::remove(const ZNTFeedAd &ad)
{
    const int row = ad.isValid() ? int(d->ads.indexOf(ad)) : -1;
    if (row < 0)
        return false;
    const QPointer<ZNTFeedAds> self(this);
    beginRemoveRows({}, row, row);
    d->ads.removeAt(row);
    endRemoveRows();
    if (self)
        Q_EMIT countChanged();
    return true;
}

int ZNTFeedAds::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant ZNTFeedAds::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || role != AdDataRole)
        return {};
    return QVariant::fromValue(d->ads.at(index.row()));
}

QHash<int, QByteArray> ZNTFeedAds::roleNames() const
{
    return {{AdDataRole, "adData"}};
}

QString ZNTFeedAds::mediaId() const
{
    return d->manager.mediaId();
}

void ZNTFeedAds::setMediaId(const QString &mediaId)
{
    d->manager.setMediaId(mediaId);
}

int ZNTFeedAds::adCount() const
{
    return int(d->manager.adCount());
}

void ZNTFeedAds::setAdCount(int count)
{
    d->manager.setAdCount(count);
}

int ZNTFeedAds::count() const
{
    return int(d->ads.size());
}

bool ZNTFeedAds::isLoading() const
{
    return d->pending > 0;
}

ZNTError ZNTFeedAds::error() const
{
    return d->error;
}

ZNTFeedManager *ZNTFeedAds::manager() const
{
    return &d->manager;
}
