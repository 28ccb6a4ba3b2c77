#include "script.h"

#include "dump.h"
#include "surroundings.h"

#include <QJsonDocument>
#include <QQuickItem>
#include <QTimer>

#include <algorithm>

namespace player {

namespace {

using Kind = Action::Kind;

bool needsMotion(const Action &action)
{
    return action.kind == Kind::Tilt || action.kind == Kind::Shake;
}

QPointF centreOf(const QQuickItem *item)
{
    return item->mapToScene({item->width() / 2, item->height() / 2});
}

QQuickItem *targetOf(const Action &action, const AdRun &run)
{
    QQuickItem *ad = run.adView(action.row);
    return !ad || action.name.isEmpty() ? ad : itemNamed(run.adItems(action.row), action.name);
}

bool writeJson(const QString &path, const QJsonObject &object)
{
    QFile file(path);
    const QByteArray json = QJsonDocument(object).toJson();
    return file.open(QIODevice::WriteOnly) && file.write(json) == json.size();
}

} // namespace

Script::Script(const Options &options, EventLog &events, Stage &stage, AdRun &run)
    : m_options(options)
    , m_events(events)
    , m_stage(stage)
    , m_run(run)
    , m_pointer(&stage.window())
    , m_screenPlace(run.screen()->position())
{
    if (std::any_of(options.actions.begin(), options.actions.end(), needsMotion))
        m_motion = std::make_unique<ZNTTestSensors>();
}

void Script::start()
{
    for (const Action &action : m_options.actions) {
        QTimer::singleShot(qRound64(action.at * 1000), Qt::PreciseTimer, this,
            [this, &action] { perform(action); });
    }
}

void Script::perform(const Action &action)
{
    m_events.write(u"action"_s, {{u"action"_s, action.text}});
    switch (action.kind) {
    case Kind::Tap:
    case Kind::Pan:
        point(action);
        break;
    case Kind::Tilt:
        m_motion->tilt(action.numbers.at(0));
        break;
    case Kind::Shake:
        m_motion->shake();
        break;
    case Kind::Close:
        m_run.close();
        break;
    case Kind::Hide:
    case Kind::Show:
    case Kind::Alpha:
    case Kind::Move:
        changeScreen(action);
        break;
    case Kind::Scroll:
        m_run.scroll(action.numbers.at(0));
        break;
    case Kind::Screenshot:
    case Kind::Dump:
    case Kind::Defaults:
        write(action);
        break;
    case Kind::Quit:
        Q_EMIT quitAsked();
        break;
    }
}

void Script::point(const Action &action)
{
    const QQuickItem *target = targetOf(action, m_run);
    if (!target) {
        qWarning("%s: there is no such item", qUtf8Printable(action.text));
    } else if (action.kind == Kind::Tap) {
        m_pointer.tap(centreOf(target));
    } else {
        const auto &numbers = action.numbers;
        m_pointer.pan(centreOf(target), {numbers.at(0), numbers.at(1)},
            std::chrono::milliseconds(qRound(numbers.at(2))));
    }
}

void Script::changeScreen(const Action &action)
{
    QQuickItem *screen = m_run.screen();
    if (action.kind == Kind::Move)
        screen->setPosition(m_screenPlace + QPointF(action.numbers.at(0), action.numbers.at(1)));
    else if (action.kind == Kind::Alpha)
        m_screenOpacity = action.numbers.at(0);
    else
        m_isScreenHidden = action.kind == Kind::Hide;
    updateVisibility(screen);
}

// Qt 6.8 never shows a window's root item again once it was hidden, so that is made transparent and
// deaf instead.
void Script::updateVisibility(QQuickItem *screen) const
{
    const bool canHide = screen->parentItem() || QT_VERSION < QT_VERSION_CHECK(6, 5, 0);
    if (canHide)
        screen->setVisible(!m_isScreenHidden);
    else
        screen->setEnabled(!m_isScreenHidden);
    screen->setOpacity(m_isScreenHidden && !canHide ? 0 : m_screenOpacity);
}

void Script::write(const Action &action)
{
    bool written = false;
    if (action.kind == Kind::Screenshot)
        written = m_stage.screenshot(action.name);
    else if (action.kind == Kind::Dump)
        written = writeJson(action.name, dumpOf(m_stage.window()));
    else
        written = writeJson(action.name, storedDefaults());
    if (!written)
        qWarning("%s: cannot be written", qUtf8Printable(action.text));
}

} // namespace player
