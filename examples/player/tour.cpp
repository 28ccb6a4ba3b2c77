#include "tour.h"

#include "dump.h"
#include "surroundings.h"

#include <QDir>

namespace player {

namespace {

struct Stop
{
    Format format;
    qint64 style;
    const char *picture;
    const char *caption;
};

constexpr Stop stops[] = {
    {Format::Splash, 0, "splash-image.png", "A splash ad: five seconds, a picture, a tap"},
    {Format::Splash, 1, "splash-shake.png", "A splash ad that a shake opens"},
    {Format::Splash, 2, "splash-slide.png", "A splash ad that a slide upwards opens"},
    {Format::Interstitial, 0, "interstitial.png",
        "An interstitial ad, over a screen of the application"},
    {Format::Feed, 0, "feed.png", "Feed ads: nine templates in a list"},
};

constexpr int look = 50;       // milliseconds between two looks at the ad
constexpr int stay = 1000;     // milliseconds for the ad to be counted
constexpr int reading = 3500;  // milliseconds for people to read its caption; a splash ad has five
constexpr int patience = 4000; // milliseconds for pictures that do not come

} // namespace

Tour::Tour(const Options &options, EventLog &events, Stage &stage)
    : m_options(options)
    , m_events(events)
    , m_stage(stage)
{
    m_watch.setInterval(look);
    connect(&m_watch, &QTimer::timeout, this, &Tour::watch);
}

void Tour::start()
{
    QDir().mkpath(m_options.screenshots);
    begin();
}

void Tour::begin()
{
    Options options = m_options;
    options.format = stops[m_stop].format;
    options.style = stops[m_stop].style;
    m_session = std::make_unique<Session>(options, m_events, m_stage);
    connect(m_session.get(), &Session::shown, this, [this] {
        m_stage.setCaption(tr(stops[m_stop].caption));
        m_waited.start();
        m_watch.start();
    });
    connect(m_session.get(), &Session::quitAsked, this, &Tour::quitAsked);
    // Queued, as a session does not survive its end; and one that ends twice ends one stop only.
    const auto ended = [this, stop = m_stop] { end(stop); };
    connect(m_session.get(), &Session::finished, this, ended, Qt::QueuedConnection);
    connect(m_session.get(), &Session::failed, this, ended, Qt::QueuedConnection);
    m_session->start();
}

void Tour::watch()
{
    AdRun &run = m_session->run();
    const QQuickItem *ad = run.adView(0);
    const bool impatient = m_waited.elapsed() > patience;
    const bool looked = m_waited.elapsed() > (isOffScreen() ? stay : reading);
    if (ad && looked && isOnScreen(ad) && (impatient || hasPictures(run.screen())))
        take();
    else if (impatient)
        close();
}

void Tour::take()
{
    const QString picture = QString::fromLatin1(stops[m_stop].picture);
    if (m_stage.screenshot(QDir(m_options.screenshots).filePath(picture)))
        ++m_shown;
    else
        qWarning("%s: cannot be written", qUtf8Printable(picture));
    close();
}

void Tour::close()
{
    m_watch.stop();
    m_session->run().close();
    // A feed has nothing that would say that it has closed.
    if (stops[m_stop].format == Format::Feed)
        end(m_stop);
}

void Tour::end(qsizetype stop)
{
    if (stop != m_stop)
        return;
    m_watch.stop();
    m_stage.setCaption({});
    m_session.reset();
    if (++m_stop < qsizetype(std::size(stops)))
        begin();
    else
        Q_EMIT finished(m_shown == int(std::size(stops)));
}

} // namespace player
