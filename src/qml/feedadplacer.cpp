#include <ZNTAds/ZNTFeedAdPlacer.h>

#include <QPointer>

#include <algorithm>

// An ad is placed in a slot: slot 0 lies after the first `interval` rows of the source, slot 1
// after twice as many. While the source changes an ad is moved back to its slot's row.
struct ZNTFeedAdPlacer::Private
{
    explicit Private(ZNTFeedAdPlacer *model)
        : q(model)
    {
    }

    struct Placed
    {
        ZNTFeedAd ad;
        int slot;
        int before; // rows of the source that lie before it, now
    };

    void connectSource(QAbstractItemModel *source);
    void connectAds();
    void placeAnew();

    int rowsBefore(int slot) const { return (slot + 1) * interval; }
    int sourceCount() const { return q->sourceModel() ? q->sourceModel()->rowCount() : 0; }
    int rowOfPlaced(int placed) const { return ads.at(placed).before + placed; }
    int placedAt(int row) const;
    int rowOf(int sourceRow) const;

    void settle();
    void moveAd(int placed, int before);
    void insertAd(const ZNTFeedAd &ad, int slot);
    void removeAd(int placed);

    void rowsInserted(int first, int last);
    void clearRows(int first, int last);
    void rowsRemoved(int first, int last);
    void keepPersistent();
    void restorePersistent();

    ZNTFeedAdPlacer *const q;
    QPointer<ZNTFeedAds> source;
    int interval = 5;
    QList<Placed> ads; // in the order of their rows
    int nextAd = 0;    // row of the ads' model that is placed next
    int nextSlot = 0;
    int count = 0; // rows of the source, as far as views have heard of them
    QModelIndexList persistent;
    QList<QPersistentModelIndex> persistentSource;
};

ZNTFeedAdPlacer::ZNTFeedAdPlacer(QObject *parent)
    : QAbstractProxyModel(parent)
    , d(std::make_unique<Private>(this))
{
}

ZNTFeedAdPlacer::~ZNTFeedAdPlacer() = default;

// Rows

// The index of the ad at the row, or -1.
int ZNTFeedAdPlacer::Private::placedAt(int row) const
{
    for (int i = 0; i < ads.size() && rowOfPlaced(i) <= row; ++i) {
        if (rowOfPlaced(i) == row)
            return i;
    }
    return -1;
}

int ZNTFeedAdPlacer::Private::rowOf(int sourceRow) const
{
    const auto lies = [sourceRow](const Placed &placed) { return placed.before <= sourceRow; };
    return sourceRow + int(std::ranges::count_if(ads, lies));
}

bool ZNTFeedAdPlacer::isAd(int row) const
{
    return d->placedAt(row) >= 0;
}

ZNTFeedAd ZNTFeedAdPlacer::ad(int row) const
{
    const int placed = d->placedAt(row);
    return placed < 0 ? ZNTFeedAd() : d->ads.at(placed).ad;
}

int ZNTFeedAdPlacer::sourceRow(int row) const
{
    if (row < 0 || row >= rowCount() || isAd(row))
        return -1;
    int ads = 0;
    while (ads < d->ads.size() && d->rowOfPlaced(ads) < row)
        ++ads;
    return row - ads;
}

int ZNTFeedAdPlacer::rowOf(int sourceRow) const
{
    return sourceRow < 0 || sourceRow >= d->count ? -1 : d->rowOf(sourceRow);
}

// Keeping the ads at their rows

// Moves each ad to its slot's row, takes out those whose slot has gone, and fills new slots.
void ZNTFeedAdPlacer::Private::settle()
{
    while (!ads.isEmpty() && rowsBefore(ads.last().slot) > count) {
        --nextAd;
        nextSlot = ads.last().slot;
        removeAd(int(ads.size()) - 1);
    }
    for (int i = int(ads.size()) - 1; i >= 0; --i) { // down, so that none passes another
        if (ads.at(i).before < rowsBefore(ads.at(i).slot))
            moveAd(i, rowsBefore(ads.at(i).slot));
    }
    for (int i = 0; i < ads.size(); ++i) {
        if (ads.at(i).before > rowsBefore(ads.at(i).slot))
            moveAd(i, rowsBefore(ads.at(i).slot));
    }
    while (source && nextAd < source->count() && rowsBefore(nextSlot) <= count)
        insertAd(source->get(nextAd++), nextSlot++);
}

void ZNTFeedAdPlacer::Private::moveAd(int placed, int before)
{
    const int from = rowOfPlaced(placed);
    const int to = before + placed;
    // Qt counts the place in the rows as they are, with the moved one among them.
    q->beginMoveRows({}, from, from, {}, to > from ? to + 1 : to);
    ads[placed].before = before;
    q->endMoveRows();
}

void ZNTFeedAdPlacer::Private::insertAd(const ZNTFeedAd &ad, int slot)
{
    const int before = rowsBefore(slot);
    const int row = before + int(ads.size());
    q->beginInsertRows({}, row, row);
    ads.append({ad, slot, before});
    q->endInsertRows();
}

void ZNTFeedAdPlacer::Private::removeAd(int placed)
{
    const int row = rowOfPlaced(placed);
    q->beginRemoveRows({}, row, row);
    ads.removeAt(placed);
    q->endRemoveRows();
}

void ZNTFeedAdPlacer::Private::placeAnew()
{
    q->beginResetModel();
    ads.clear();
    nextAd = 0;
    nextSlot = 0;
    count = sourceCount();
    for (; source && nextAd < source->count() && rowsBefore(nextSlot) <= count; ++nextSlot)
        ads.append({source->get(nextAd++), nextSlot, rowsBefore(nextSlot)});
    q->endResetModel();
}

// What changes in the source

void ZNTFeedAdPlacer::Private::rowsInserted(int first, int last)
{
    const int more = last - first + 1;
    count += more;
    for (Placed &placed : ads)
        placed.before += placed.before > first ? more : 0;
    q->endInsertRows();
    settle();
}

// Ads between the rows that go are moved before them, so that they are rows without a gap.
void ZNTFeedAdPlacer::Private::clearRows(int first, int last)
{
    for (int i = 0; i < ads.size(); ++i) {
        if (ads.at(i).before > first && ads.at(i).before <= last)
            moveAd(i, first);
    }
    const int row = rowOf(first);
    q->beginRemoveRows({}, row, row + last - first);
}

void ZNTFeedAdPlacer::Private::rowsRemoved(int first, int last)
{
    const int fewer = last - first + 1;
    count -= fewer;
    for (Placed &placed : ads)
        placed.before -= placed.before > first ? fewer : 0;
    q->endRemoveRows();
    settle();
}

void ZNTFeedAdPlacer::Private::keepPersistent()
{
    Q_EMIT q->layoutAboutToBeChanged();
    persistent = q->persistentIndexList();
    persistentSource.clear();
    for (const QModelIndex &index : std::as_const(persistent))
        persistentSource.append(q->mapToSource(index));
}

void ZNTFeedAdPlacer::Private::restorePersistent()
{
    for (int i = 0; i < persistent.size(); ++i) {
        if (!q->isAd(persistent.at(i).row()))
            q->changePersistentIndex(persistent.at(i), q->mapFromSource(persistentSource.at(i)));
    }
    persistent.clear();
    persistentSource.clear();
    Q_EMIT q->layoutChanged();
}

void ZNTFeedAdPlacer::Private::connectSource(QAbstractItemModel *model)
{
    using Model = QAbstractItemModel;
    QObject::connect(model, &Model::rowsAboutToBeInserted, q,
        [this](const QModelIndex &parent, int first, int last) {
            if (!parent.isValid())
                q->beginInsertRows({}, rowOf(first), rowOf(first) + last - first);
        });
    QObject::connect(
        model, &Model::rowsInserted, q, [this](const QModelIndex &parent, int first, int last) {
            if (!parent.isValid())
                rowsInserted(first, last);
        });
    QObject::connect(model, &Model::rowsAboutToBeRemoved, q,
        [this](const QModelIndex &parent, int first, int last) {
            if (!parent.isValid())
                clearRows(first, last);
        });
    QObject::connect(
        model, &Model::rowsRemoved, q, [this](const QModelIndex &parent, int first, int last) {
            if (!parent.isValid())
                rowsRemoved(first, last);
        });
    QObject::connect(model, &Model::rowsAboutToBeMoved, q, [this] { keepPersistent(); });
    QObject::connect(model, &Model::rowsMoved, q, [this] { restorePersistent(); });
    QObject::connect(model, &Model::layoutAboutToBeChanged, q, [this] { keepPersistent(); });
    QObject::connect(model, &Model::layoutChanged, q, [this] { restorePersistent(); });
    QObject::connect(model, &Model::modelReset, q, [this] { placeAnew(); });
    QObject::connect(model, &Model::dataChanged, q,
        [this](const QModelIndex &first, const QModelIndex &last, const QList<int> &roles) {
            Q_EMIT q->dataChanged(q->mapFromSource(first), q->mapFromSource(last), roles);
        });
    QObject::connect(model, &QObject::destroyed, q, [this] { placeAnew(); });
}

void ZNTFeedAdPlacer::setSourceModel(QAbstractItemModel *model)
{
    if (model == sourceModel())
        return;
    if (sourceModel())
        sourceModel()->disconnect(this);
    beginResetModel();
    QAbstractProxyModel::setSourceModel(model);
    d->ads.clear();
    d->count = 0;
    endResetModel();
    if (model)
        d->connectSource(model);
    d->placeAnew();
}

// The ads

ZNTFeedAds *ZNTFeedAdPlacer::ads() const
{
    return d->source;
}

void ZNTFeedAdPlacer::setAds(ZNTFeedAds *ads)
{
    if (d->source == ads)
        return;
    if (d->source)
        d->source->disconnect(this);
    d->source = ads;
    d->connectAds();
    const QPointer<ZNTFeedAdPlacer> self(this);
    d->placeAnew();
    if (self)
        Q_EMIT adsChanged();
}

void ZNTFeedAdPlacer::Private::connectAds()
{
    if (!source)
        return;
    QObject::connect(source, &QAbstractItemModel::modelReset, q, [this] {
        while (!ads.isEmpty())
            removeAd(int(ads.size()) - 1);
        nextAd = 0;
        nextSlot = 0;
        settle();
    });
    QObject::connect(
        source, &QAbstractItemModel::rowsRemoved, q, [this](const QModelIndex &, int first) {
            if (first >= nextAd)
                return;
            --nextAd;
            removeAd(first);
        });
    QObject::connect(source, &QObject::destroyed, q, [this] {
        while (!ads.isEmpty())
            removeAd(int(ads.size()) - 1);
    });
}

int ZNTFeedAdPlacer::interval() const
{
    return d->interval;
}

void ZNTFeedAdPlacer::setInterval(int rows)
{
    const int atLeastOne = std::max(rows, 1);
    if (std::exchange(d->interval, atLeastOne) == atLeastOne)
        return;
    const QPointer<ZNTFeedAdPlacer> self(this);
    d->placeAnew();
    if (self)
        Q_EMIT intervalChanged();
}

// The model

QModelIndex ZNTFeedAdPlacer::mapToSource(const QModelIndex &index) const
{
    const int row = index.isValid() ? sourceRow(index.row()) : -1;
    return row < 0 ? QModelIndex() : sourceModel()->index(row, index.column());
}

QModelIndex ZNTFeedAdPlacer::mapFromSource(const QModelIndex &sourceIndex) const
{
    const int row = sourceIndex.isValid() ? rowOf(sourceIndex.row()) : -1;
    return row < 0 ? QModelIndex() : createIndex(row, sourceIndex.column());
}

QModelIndex ZNTFeedAdPlacer::index(int row, int column, const QModelIndex &parent) const
{
    return hasIndex(row, column, parent) ? createIndex(row, column) : QModelIndex();
}

QModelIndex ZNTFeedAdPlacer::parent(const QModelIndex &index) const
{
    Q_UNUSED(index)
    return {};
}

QModelIndex ZNTFeedAdPlacer::sibling(int row, int column, const QModelIndex &index) const
{
    Q_UNUSED(index)
    return this->index(row, column);
}

int ZNTFeedAdPlacer::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : d->count + int(d->ads.size());
}

int ZNTFeedAdPlacer::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() || !sourceModel() ? 0 : sourceModel()->columnCount();
}

bool ZNTFeedAdPlacer::hasChildren(const QModelIndex &parent) const
{
    return rowCount(parent) > 0;
}

QVariant ZNTFeedAdPlacer::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    if (role == IsAdRole)
        return isAd(index.row());
    if (role == AdDataRole)
        return QVariant::fromValue(ad(index.row()));
    return mapToSource(index).data(role);
}

Qt::ItemFlags ZNTFeedAdPlacer::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    const QModelIndex sourceIndex = mapToSource(index);
    return sourceIndex.isValid() ? sourceIndex.flags()
                                 : Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
}

QHash<int, QByteArray> ZNTFeedAdPlacer::roleNames() const
{
    QHash<int, QByteArray> names =
        sourceModel() ? sourceModel()->roleNames() : QHash<int, QByteArray>();
    names.insert(IsAdRole, "isAd");
    names.insert(AdDataRole, "adData");
    return names;
}
