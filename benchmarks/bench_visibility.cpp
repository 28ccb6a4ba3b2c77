// What it costs to look whether a feed ad is seen, beside a walk that asks Qt to map each step.
#include "slice.h"

#include "ui/visibleshare.h"

#include <ZNTAds/ZNTFeedManager.h>

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QThread>

namespace {

// The ad views of a list that lies as deep in its window as they do in applications: in a row,
// under the list's content, the list, and pages, stacks, loaders and layouts about it.
class Feed
{
public:
    Feed(int rows, int depth)
    {
        m_window.resize(400, 800);
        m_window.show();
        QQuickItem *list = m_window.contentItem();
        for (int i = 0; i < depth - 4; ++i)
            list = item(list, {400, 800});
        list->setY(56); // under a header
        list->setClip(true);
        content = item(list, {400, 200.0 * rows});
        for (int i = 0; i < rows; ++i) {
            QQuickItem *row = item(content, {375, 200});
            row->setPosition({375 * -0.6, 2.0 * i / rows}); // too little of it to count
            ads.append(item(row, {375, 200}));
        }
    }

    QList<QQuickItem *> ads;
    QQuickItem *content = nullptr;

private:
    static QQuickItem *item(QQuickItem *parent, const QSizeF &size)
    {
        auto *made = new QQuickItem(parent);
        made->setSize(size);
        return made;
    }

    QQuickWindow m_window;
};

std::optional<double> mappedShare(const QQuickItem *item)
{
    const QQuickItem *root = item->window()->contentItem();
    if (item->window()->visibility() == QWindow::Hidden)
        return {};
    QRectF part(QPointF(), item->size());
    for (const QQuickItem *at = item; at; at = at->parentItem()) {
        if (!at->isVisible() || at->opacity() == 0)
            return {};
    }
    for (const QQuickItem *at = item; at != root; at = at->parentItem()) {
        part = at->mapRectToItem(at->parentItem(), part);
        if (at->parentItem()->clip()) {
            part = part.intersected(QRectF(QPointF(), at->parentItem()->size()));
            if (part.isEmpty())
                return {};
        }
    }
    part = part.intersected(QRectF(QPointF(), item->window()->size()));
    return part.width() * part.height() / (item->width() * item->height()) * 100;
}

template <std::optional<double> (*share)(const QQuickItem *)>
void oneAd(benchmark::State &state)
{
    const Feed feed(1, int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(share(feed.ads.first()));
}

void oneAdOfAList(benchmark::State &state)
{
    const Feed feed(100, int(state.range(0)));
    znt::VisibleShares shares;
    qsizetype i = 0;
    for (auto _ : state) {
        if (i == feed.ads.size()) {
            i = 0;
            shares.forget();
        }
        benchmark::DoNotOptimize(shares.of(feed.ads[i++]));
    }
}

// The main thread's work in a tenth of a second.
template <bool scrolls>
void pendingAds(benchmark::State &state)
{
    const Feed feed(int(state.range(0)), 16);
    ZNTFeedManager manager;
    QList<ZNTFeedAdDataPtr> records;
    for (QQuickItem *ad : feed.ads) {
        records.append(std::make_shared<ZNTFeedAdData>());
        records.last()->setAdId(QString::number(records.size()));
        manager.registerAdForView(ad, records.last());
    }
    QCoreApplication::processEvents();
    for (auto _ : state) {
        QThread::msleep(100);
        if (scrolls)
            feed.content->setY(feed.content->y() == 0 ? -0.5 : 0);
        const double begin = threadSeconds();
        QCoreApplication::processEvents();
        state.SetIterationTime(threadSeconds() - begin);
    }
    for (const ZNTFeedAdDataPtr &record : records) {
        if (!manager.isCheckingVisibility(record))
            state.SkipWithError("an ad is not pending any more");
    }
}

BENCHMARK(oneAd<znt::visibleShare>)->Name("one_ad/ours")->ArgName("depth")->Arg(8)->Arg(16);
BENCHMARK(oneAd<mappedShare>)->Name("one_ad/mapRectToItem")->ArgName("depth")->Arg(8)->Arg(16);
BENCHMARK(oneAdOfAList)->Name("one_ad_of_100/ours")->ArgName("depth")->Arg(8)->Arg(16);
BENCHMARK(pendingAds<true>)
    ->Name("scrolling_ads_tick")
    ->Arg(1'000)
    ->UseManualTime()
    ->Iterations(100)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(pendingAds<false>)
    ->Name("pending_ads_tick")
    ->Arg(0)
    ->Arg(1'000)
    ->UseManualTime()
    ->Iterations(100)
    ->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
