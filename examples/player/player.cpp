#include "player.h"

#include "surroundings.h"

#include <ZNTAds/ZNTAdsManager.h>
#include <ZNTAds/ZNTAdsSDK.h>

#include <QFileInfo>
#include <QGuiApplication>
#include <QTimer>

namespace player {

namespace {

int milliseconds(double seconds)
{
    return int(seconds * 1000);
}

} // namespace

Player::Player(const Options &options, EventLog &events)
    : m_options(options)
    , m_events(events)
    , m_stage(u"ZNTAds Player: "_s + options.formatName(), options.size)
    // A tour that time cuts off has not shown all.
    , m_status(options.format == Format::Tour ? 1 : 0)
{
}

void Player::start()
{
    limitTime();
    registerHost();
    ZNTAdsSDK::setLinkOpener(
        [this](const QString &link, const auto &done) { openLink(link, done); });
    if (m_options.exposureRatio)
        ZNTAdsManager::sharedInstance()->setExposureRatio(*m_options.exposureRatio);
    play();
}

// A studio stays open, and a preview takes what it takes, unless they are told how long.
void Player::limitTime()
{
    if (m_options.format >= Format::Studio && !m_options.duration)
        return;
    constexpr double otherwise = 60;
    const qint64 left =
        milliseconds(m_options.duration.value_or(otherwise)) - m_events.milliseconds();
    QTimer::singleShot(qMax<qint64>(0, left), Qt::PreciseTimer, qApp, &QCoreApplication::quit);
}

void Player::registerHost()
{
    if (m_options.format >= Format::Studio && m_options.exchange.isEmpty())
        startExchange();
    if (m_options.log)
        ZNTAdsSDK::setLogEnabled(*m_options.log);
    if (m_options.testMode)
        ZNTAdsSDK::setTestMode(*m_options.testMode);
    ZNTAdsSDK::setEndpoints(m_options.exchange, m_options.logUpload);
    if (!m_options.registers)
        return;
    ZNTAdsSDK::registerWithAppId(m_options.appId, m_options.mediaId, m_options.secret);
    if (ZNTAdsSDK::isInitialized())
        m_events.write(u"registered"_s);
}

void Player::openLink(const QString &link, const std::function<void(bool)> &done)
{
    const UrlOpening how =
        m_options.urlOpening.value_or(isOffScreen() ? UrlOpening::Ok : UrlOpening::Desktop);
    const auto tell = [this, link, done](bool opened) {
        m_events.write(u"openUrl"_s, {{u"url"_s, link}, {u"opened"_s, opened}});
        done(opened);
    };
    if (how == UrlOpening::Desktop) {
        ZNTAdsSDK::openLink(link, tell);
        return;
    }
    const bool isWeb = link.startsWith(u"http:"_s, Qt::CaseInsensitive)
        || link.startsWith(u"https:"_s, Qt::CaseInsensitive);
    tell(how == UrlOpening::Ok || (how == UrlOpening::FailDeeplink && isWeb));
}

void Player::play()
{
    const auto quit = [this] { finish(0); };
    if (m_options.format == Format::Tour)
        return playTour();
    if (m_options.format == Format::Studio)
        return openStudio();
    if (m_options.format == Format::Preview)
        return drawPreview();
    m_session = std::make_unique<Session>(m_options, m_events, m_stage);
    connect(m_session.get(), &Session::quitAsked, this, quit);
    connect(m_session.get(), &Session::finished, this, quit);
    connect(m_session.get(), &Session::failed, this, [this] { finish(1); });
    m_session->start();
}

void Player::playTour()
{
    m_tour = std::make_unique<Tour>(m_options, m_events, m_stage);
    connect(m_tour.get(), &Tour::quitAsked, this, [this] { finish(0); });
    connect(m_tour.get(), &Tour::finished, this, [this](bool all) { finish(all ? 0 : 1); });
    m_tour->start();
}

void Player::openStudio()
{
    m_studio = std::make_unique<Studio>(m_options, m_events, m_stage);
    connect(m_studio.get(), &Studio::closed, qApp, &QCoreApplication::quit);
    if (!m_studio->start())
        finish(1);
}

void Player::drawPreview()
{
    m_stage.window().hide();
    m_preview = std::make_unique<Preview>(m_options);
    connect(m_preview.get(), &Preview::finished, this, [this](bool written) {
        m_status = written ? 0 : 1;
        QCoreApplication::quit();
    });
    m_preview->start();
}

// Its own, which also serves what lies beside an answer file.
void Player::startExchange()
{
    m_exchange = std::make_unique<ZNTTestExchange>();
    m_exchange->setSecret(m_options.secret);
    m_options.exchange = m_exchange->httpsUrl();
    m_options.logUpload = m_exchange->httpUrl();
    if (!m_options.answer)
        return;
    m_exchange->setFolder(QFileInfo(m_options.answerFile).path());
    const QString position = u"preview"_s;
    m_exchange->setAnswer(position, *m_options.answer);
    m_options.answer = m_exchange->answer(position);
}

// The first end counts; what comes while the run lingers changes nothing.
void Player::finish(int status)
{
    if (m_finished)
        return;
    m_finished = true;
    m_status = status;
    QTimer::singleShot(
        milliseconds(m_options.linger), Qt::PreciseTimer, qApp, &QCoreApplication::quit);
}

} // namespace player
