// Makes events of what the library traces: which ad it was, what is known of its view.
#pragma once

#include "diagnostics/adtrace.h"

#include <QDateTime>
#include <QHash>
#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <QTimer>

#include <array>
#include <memory>
#include <optional>

class ZNTFeedManager;
class ZNTInterstitialManager;
class ZNTSplashManager;

namespace znt::inspector {

struct AdKey
{
    QString format;
    QString position;
    QString adId;
};

struct AdEvent
{
    qint64 time = 0; // ms since 1970
    AdKey ad;
    QString what;
    QJsonObject details;
};

// What is known of a view.
struct ViewFacts
{
    AdKey ad;
    bool isWatched = false;
    QDateTime watchedSince;
    QDateTime unwatchedSince;
    QDateTime seenAt;
    double share = -1; // percent, as it was told last; -1: nothing is visible
};

// There is one for as long as somebody listens. Main thread, but for what the trace calls.
class AdWitness : public QObject
{
    Q_OBJECT

public:
    static std::shared_ptr<AdWitness> shared();
    ~AdWitness() override;
    Q_DISABLE_COPY_MOVE(AdWitness)

    std::optional<ViewFacts> factsOf(const QQuickItem *view) const;
    // Those that are known and alive.
    QList<QQuickItem *> views() const;

Q_SIGNALS:
    void happened(const znt::inspector::AdEvent &event);

private:
    struct Tracker
    {
        AdKey ad;
        QString kind;
    };
    struct View
    {
        QPointer<QQuickItem> item;
        ViewFacts facts;
    };

    AdWitness();
    static void listen(ZNTAdTrace::Step step, const QObject *source, const QString &text);
    void take(ZNTAdTrace::Step step, QObject *source, const QString &text);

    void know(QObject *manager);
    void knowSplash(ZNTSplashManager *manager);
    void knowInterstitial(ZNTInterstitialManager *manager);
    void knowFeed(ZNTFeedManager *manager);
    void knowFeedView(QQuickItem *view, const QString &adId);
    void knowTrackers(const AdKey &ad, const std::array<QJsonValue, 3> &lists);
    void loaded(QObject *manager);
    template <class Manager>
    void hearFullScreen(Manager *manager);

    AdKey keyOf(const QObject *manager) const;
    View &viewOf(QQuickItem *item);
    void watched(QQuickItem *item, ZNTAdTrace::Step step);
    void tracked(ZNTAdTrace::Step step, const QString &text);
    void lookAtShares();
    void tell(const AdKey &ad, const QString &what, const QJsonObject &details = {});

    QHash<const QObject *, AdKey> m_managers; // with what is known of the ad that each has
    QHash<QString, Tracker> m_trackers;       // by URL
    QHash<const QObject *, View> m_views;
    AdKey m_tapped;
    QTimer m_looks;
};

} // namespace znt::inspector
