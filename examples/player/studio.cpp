#include "studio.h"

#include <ZNTAds/ZNTAdsSDK.h>
#include <ZNTAdsInspector/ZNTInspector.h>
#include <ZNTAdsTesting/ZNTTestExchange.h>

#include <QFileInfo>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QPalette>
#include <QProcess>
#include <QQmlContext>

namespace player {

namespace {

constexpr char scaleVariable[] = "QT_SCALE_FACTOR";
constexpr int look = 100; // milliseconds between two looks for the ad's view

QPalette palette(bool dark)
{
    QPalette palette;
    if (dark) {
        palette.setColor(QPalette::Window, QColor(0x20, 0x22, 0x26));
        palette.setColor(QPalette::WindowText, Qt::white);
        palette.setColor(QPalette::Base, QColor(0x18, 0x1a, 0x1d));
        palette.setColor(QPalette::Text, Qt::white);
        palette.setColor(QPalette::Button, QColor(0x30, 0x33, 0x38));
        palette.setColor(QPalette::ButtonText, Qt::white);
    }
    return palette;
}

} // namespace

Studio::Studio(const Options &options, EventLog &events, Stage &stage)
    : m_options(options)
    , m_events(events)
    , m_stage(stage)
{
    m_looks.setInterval(look);
    connect(&m_looks, &QTimer::timeout, this, [this] {
        QQuickItem *view = m_session ? m_session->run().adView(0) : nullptr;
        if (m_view == view)
            return;
        m_view = view;
        Q_EMIT viewChanged();
    });
}

Studio::~Studio() = default;

bool Studio::start()
{
    ZNTInspector::registerTypes();
    m_engine.rootContext()->setContextProperty(u"studio"_s, this);
    m_engine.load(QUrl(u"qrc:/player/Studio.qml"_s));
    auto *window = qobject_cast<QQuickWindow *>(m_engine.rootObjects().value(0));
    if (!window)
        return false;
    for (const QWindow *one : {window, &m_stage.window()}) {
        connect(one, &QWindow::visibleChanged, this, [this](bool visible) {
            if (!visible)
                Q_EMIT closed();
        });
    }
    m_looks.start();
    return true;
}

QStringList Studio::positions() const
{
    return ZNTTestExchange::builtInPositions();
}

QQuickItem *Studio::view() const
{
    return m_view;
}

void Studio::say(const QString &message)
{
    m_message = message;
    Q_EMIT messageChanged();
}

void Studio::play(int format, int style, const QString &position)
{
    m_session.reset();
    say({});
    m_options.format = Format(qBound(0, format, int(Format::Feed)));
    m_options.style = style;
    m_options.position = position;
    m_options.templateSize.setWidth(m_stage.window().width());
    m_session = std::make_unique<Session>(m_options, m_events, m_stage);
    // Queued, as a session does not survive its end.
    const auto ended = [this, session = m_session.get()](const QString &message) {
        return [this, session, message] {
            if (m_session.get() != session)
                return;
            end();
            say(message);
        };
    };
    connect(m_session.get(), &Session::finished, this, ended(tr("The ad has closed.")),
        Qt::QueuedConnection);
    connect(m_session.get(), &Session::failed, this,
        ended(tr("No ad can be shown; the events say why.")), Qt::QueuedConnection);
    m_session->start();
}

void Studio::end()
{
    m_session.reset();
}

void Studio::close()
{
    if (!m_session)
        return;
    m_session->run().close();
    // A feed has nothing that would say that it has closed.
    if (m_session && m_options.format == Format::Feed)
        end();
}

void Studio::takeAnswer(const QUrl &file)
{
    m_answerFile.clear();
    m_options.answer.reset();
    if (!file.isEmpty()) {
        QFile source(file.toLocalFile());
        const bool isOpen = source.open(QIODevice::ReadOnly);
        const QJsonDocument document =
            isOpen ? QJsonDocument::fromJson(source.readAll()) : QJsonDocument();
        if (document.isObject()) {
            m_answerFile = QFileInfo(source).fileName();
            m_options.answer = document.object();
        }
        say(document.isObject() ? QString()
                : isOpen        ? tr("%1 holds no JSON object.").arg(source.fileName())
                                : tr("%1 cannot be read.").arg(source.fileName()));
    }
    Q_EMIT answerChanged();
}

void Studio::setSize(int width, int height)
{
    m_stage.window().resize(width, height);
}

double Studio::scale() const
{
    const double scale = qEnvironmentVariable(scaleVariable).toDouble();
    return scale > 0 ? scale : 1;
}

void Studio::setScale(double scale)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(scaleVariable), QString::number(scale));
    process.setProcessEnvironment(environment);
    process.setProgram(QCoreApplication::applicationFilePath());
    process.setArguments(QCoreApplication::arguments().mid(1));
    if (process.startDetached())
        Q_EMIT closed();
    else
        say(process.errorString());
}

void Studio::setInsets(double top, double bottom)
{
    ZNTAdsSDK::setSafeAreaInsets({0, top, 0, bottom});
}

void Studio::setDark(bool dark)
{
    QGuiApplication::setPalette(palette(dark));
}

void Studio::setRightToLeft(bool rightToLeft)
{
    QGuiApplication::setLayoutDirection(rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
}

void Studio::setSpeed(double speed)
{
    m_clock.reset();
    if (speed == 1)
        return;
    m_clock = std::make_unique<ZNTTestClock>();
    m_clock->setSpeed(speed);
}

} // namespace player
