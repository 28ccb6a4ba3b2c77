#include <ZNTAdsInspector/ZNTAdExplanation.h>

#include "adwitness.h"

#include "ui/visibleshare.h"

#include <ZNTAds/ZNTAdsManager.h>

#include <QPointer>
#include <QTimer>

using namespace znt::inspector;

namespace {

constexpr int lookInterval = 100; // ms

ZNTAdExplanation::Reason reasonOf(ZNTVisibility::Obstacle::Kind kind)
{
    using Obstacle = ZNTVisibility::Obstacle;
    switch (kind) {
    case Obstacle::None:
        break;
    case Obstacle::NoWindow:
        return ZNTAdExplanation::NoWindow;
    case Obstacle::NoSize:
        return ZNTAdExplanation::NoSize;
    case Obstacle::Hidden:
        return ZNTAdExplanation::Hidden;
    case Obstacle::Transparent:
        return ZNTAdExplanation::Transparent;
    case Obstacle::Undrawn:
        return ZNTAdExplanation::NotDrawn;
    case Obstacle::Clip:
        return ZNTAdExplanation::Clipped;
    case Obstacle::Scaled:
        return ZNTAdExplanation::Scaled;
    case Obstacle::WindowEdge:
        return ZNTAdExplanation::OutsideWindow;
    case Obstacle::WindowNotShown:
        return ZNTAdExplanation::WindowNotShown;
    }
    return ZNTAdExplanation::Nothing;
}

// Its type, as it is written in QML or C++, and its name.
QString nameOf(const QQuickItem *item, const QQuickItem *view)
{
    if (item == view)
        return QStringLiteral("the view itself");
    const QString type =
        QString::fromLatin1(item->metaObject()->className()).section(QStringLiteral("_QML"), 0, 0);
    const QString name = item->objectName();
    return name.isEmpty() ? type : QStringLiteral("%1 \"%2\"").arg(type, name);
}

QString timeText(const QDateTime &time)
{
    return time.toString(QStringLiteral("HH:mm:ss.zzz"));
}

QString percentText(double percent)
{
    return QStringLiteral("%1 %").arg(percent, 0, 'f', percent < 10 ? 1 : 0);
}

} // namespace

class ZNTAdExplanation::Private
{
public:
    // What was found at a look.
    struct Findings
    {
        bool counts = false;
        double share = 0;
        double ratio = 0;
        Reason reason = NoView;
        QPointer<QQuickItem> obstacle;
        ViewFacts facts;

        auto values() const
        {
            return std::tuple(counts, share, ratio, reason, obstacle.data(), facts.isWatched,
                facts.watchedSince, facts.unwatchedSince, facts.seenAt);
        }
    };

    Findings look() const;
    QString cause() const;
    QString past() const;

    QPointer<QQuickItem> view;
    std::shared_ptr<AdWitness> witness = AdWitness::shared();
    Findings found;
    QTimer timer;
};

ZNTAdExplanation::Private::Findings ZNTAdExplanation::Private::look() const
{
    Findings now;
    now.ratio = ZNTAdsManager::sharedInstance()->currentExposureRatio();
    if (!view)
        return now;
    const std::optional<double> visible = ZNTVisibility::share(view);
    const ZNTVisibility::Obstacle obstacle = ZNTVisibility::obstacle(view);
    now.share = visible.value_or(0);
    now.counts = visible && *visible >= now.ratio;
    now.reason = reasonOf(obstacle.kind);
    now.obstacle = const_cast<QQuickItem *>(obstacle.item);
    now.facts = witness->factsOf(view).value_or(ViewFacts());
    return now;
}

QString ZNTAdExplanation::Private::cause() const
{
    const QString item = found.obstacle ? nameOf(found.obstacle, view) : QString();
    switch (found.reason) {
    case Nothing:
        return QStringLiteral("nothing is in its way");
    case NoView:
        return QStringLiteral("there is no view");
    case NoWindow:
        return QStringLiteral("it is in no window");
    case NoSize:
        return QStringLiteral("it has no size");
    case Hidden:
        return QStringLiteral("%1 is hidden").arg(item);
    case Transparent:
        return QStringLiteral("%1 has an opacity of 0").arg(item);
    case NotDrawn:
        return QStringLiteral("its list does not draw %1").arg(item);
    case Clipped:
        return QStringLiteral("%1 clips it").arg(item);
    case Scaled:
        return QStringLiteral("%1 is drawn smaller than it is").arg(item);
    case OutsideWindow:
        return QStringLiteral("it lies outside of the window");
    case WindowNotShown:
        return QStringLiteral("its window is hidden, minimised, transparent or not exposed");
    }
    return {};
}

QString ZNTAdExplanation::Private::past() const
{
    const ViewFacts &facts = found.facts;
    if (facts.seenAt.isValid())
        return QStringLiteral("It was counted at %1.").arg(timeText(facts.seenAt));
    if (facts.isWatched)
        return QStringLiteral("It has been watched since %1.").arg(timeText(facts.watchedSince));
    if (facts.unwatchedSince.isValid())
        return QStringLiteral("It has not been watched since %1.")
            .arg(timeText(facts.unwatchedSince));
    return QStringLiteral("It is not known to be watched.");
}

ZNTAdExplanation::ZNTAdExplanation(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>())
{
    d->timer.setInterval(lookInterval);
    connect(&d->timer, &QTimer::timeout, this, &ZNTAdExplanation::update);
}

ZNTAdExplanation::~ZNTAdExplanation() = default;

QQuickItem *ZNTAdExplanation::view() const
{
    return d->view;
}

void ZNTAdExplanation::setView(QQuickItem *view)
{
    if (d->view == view)
        return;
    if (d->view)
        d->view->disconnect(this);
    d->view = view;
    if (view) {
        connect(
            view, &QObject::destroyed, this,
            [this] {
                Q_EMIT viewChanged();
                update();
            },
            Qt::QueuedConnection);
    }
    Q_EMIT viewChanged();
    update();
}

bool ZNTAdExplanation::isActive() const
{
    return d->timer.isActive();
}

void ZNTAdExplanation::setActive(bool active)
{
    if (active == isActive())
        return;
    if (active)
        d->timer.start();
    else
        d->timer.stop();
    Q_EMIT activeChanged();
    update();
}

void ZNTAdExplanation::update()
{
    const Private::Findings now = d->look();
    if (now.values() == d->found.values())
        return;
    d->found = now;
    Q_EMIT changed();
}

bool ZNTAdExplanation::counts() const
{
    return d->found.counts;
}

double ZNTAdExplanation::share() const
{
    return d->found.share;
}

double ZNTAdExplanation::ratio() const
{
    return d->found.ratio;
}

ZNTAdExplanation::Reason ZNTAdExplanation::reason() const
{
    return d->found.reason;
}

QQuickItem *ZNTAdExplanation::obstacle() const
{
    return d->found.obstacle;
}

bool ZNTAdExplanation::isWatched() const
{
    return d->found.facts.isWatched;
}

QDateTime ZNTAdExplanation::watchedSince() const
{
    return d->found.facts.watchedSince;
}

QDateTime ZNTAdExplanation::unwatchedSince() const
{
    return d->found.facts.unwatchedSince;
}

QDateTime ZNTAdExplanation::seenAt() const
{
    return d->found.facts.seenAt;
}

QString ZNTAdExplanation::sentence() const
{
    const auto &found = d->found;
    if (found.reason == NoView)
        return QStringLiteral("There is no view.");
    const QString amount = QStringLiteral("%1 of it is visible, %2 is needed: %3.")
                               .arg(percentText(found.share), percentText(found.ratio), d->cause());
    return QStringLiteral("%1: %2 %3")
        .arg(found.counts ? QStringLiteral("Counts") : QStringLiteral("Does not count"), amount,
            d->past());
}
