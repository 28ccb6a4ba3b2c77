#include <ZNTAdsTesting/ZNTAdSpy.h>

#include "expectation.h"

#include <ZNTAds/ZNTError.h>

#include <QMetaMethod>

#include <algorithm>

namespace {

// What an ad tells by its signals, which have the same names in every format.
struct Told
{
    const char *signal;
    const char *slot;
    ZNTAdSpy::Event event;
    const char *text;
};

constexpr Told told[] = {
    {"loaded", "hearSignal()", ZNTAdSpy::Loaded, "loaded"},
    {"failed", "hearFailure(ZNTError)", ZNTAdSpy::Failed, "failed"},
    {"appeared", "hearSignal()", ZNTAdSpy::Shown, "shown"},
    {"rendered", "hearSignal()", ZNTAdSpy::Seen, "seen"},
    {"clicked", "hearSignal()", ZNTAdSpy::Clicked, "clicked"},
    {"targetOpened", "hearSignal()", ZNTAdSpy::TargetOpened, "target opened"},
    {"closed", "hearSignal()", ZNTAdSpy::Closed, "closed"},
};

QString textOf(ZNTAdSpy::Event event)
{
    for (const Told &one : told) {
        if (one.event == event)
            return QLatin1String(one.text);
    }
    return QStringLiteral("event %1").arg(event);
}

QStringList textsOf(const QList<ZNTAdSpy::Event> &events)
{
    QStringList texts;
    for (const ZNTAdSpy::Event event : events)
        texts.append(textOf(event));
    return texts;
}

} // namespace

ZNTAdSpy::ZNTAdSpy(QObject *target, QObject *parent)
    : QObject(parent)
{
    if (target)
        setTarget(target);
}

ZNTAdSpy::~ZNTAdSpy() = default;

QObject *ZNTAdSpy::target() const
{
    return m_target;
}

void ZNTAdSpy::setTarget(QObject *target)
{
    if (m_target == target)
        return;
    if (m_target)
        m_target->disconnect(this);
    m_target = target;
    clear();
    const auto isListening = [this](const Told &one) { return listen(one.signal, one.slot); };
    if (target && std::count_if(std::begin(told), std::end(told), isListening) == 0)
        qWarning("ZNTAdSpy: a %s tells nothing about an ad", target->metaObject()->className());
    Q_EMIT targetChanged();
}

// The signal by its name, whatever it carries.
bool ZNTAdSpy::listen(const char *signal, const char *slot)
{
    const QMetaObject *type = m_target->metaObject();
    for (int i = 0; i < type->methodCount(); ++i) {
        const QMetaMethod method = type->method(i);
        if (method.methodType() != QMetaMethod::Signal || method.name() != signal)
            continue;
        const bool saysWhy = method.methodSignature() == "closed(bool)";
        const int index = metaObject()->indexOfSlot(saysWhy ? "hearClose(bool)" : slot);
        return connect(m_target, method, this, metaObject()->method(index));
    }
    return false;
}

int ZNTAdSpy::timeout() const
{
    return m_timeout;
}

void ZNTAdSpy::setTimeout(int milliseconds)
{
    if (std::exchange(m_timeout, std::max(milliseconds, 0)) != m_timeout)
        Q_EMIT timeoutChanged();
}

QStringList ZNTAdSpy::heard() const
{
    return textsOf(m_heard);
}

int ZNTAdSpy::count(Event event) const
{
    return int(m_heard.count(event));
}

qint64 ZNTAdSpy::errorCode() const
{
    return m_errorCode;
}

bool ZNTAdSpy::hasClosedByItself() const
{
    return m_hasClosedByItself;
}

void ZNTAdSpy::clear()
{
    m_heard.clear();
    m_error.clear();
    m_errorCode = 0;
    m_hasClosedByItself = false;
    Q_EMIT heardChanged();
}

void ZNTAdSpy::hear(Event event)
{
    m_heard.append(event);
    Q_EMIT heardChanged();
}

void ZNTAdSpy::hearSignal()
{
    const QByteArray signal = sender()->metaObject()->method(senderSignalIndex()).name();
    const auto one = std::find_if(std::begin(told), std::end(told),
        [&signal](const Told &candidate) { return signal == candidate.signal; });
    if (one != std::end(told))
        hear(one->event);
}

void ZNTAdSpy::hearFailure(const ZNTError &error)
{
    m_errorCode = error.code();
    m_error = QStringLiteral("%1 %2: %3")
                  .arg(error.domain())
                  .arg(error.code())
                  .arg(error.localizedDescription());
    hear(Failed);
}

void ZNTAdSpy::hearClose(bool autoClose)
{
    m_hasClosedByItself = autoClose;
    hear(Closed);
}

QString ZNTAdSpy::unmet(const QString &expected) const
{
    QString heard = m_heard.isEmpty() ? QStringLiteral("nothing") : textsOf(m_heard).join(", ");
    if (!m_error.isEmpty())
        heard += QStringLiteral(" (%1)").arg(m_error);
    return QStringLiteral("expected %1; heard: %2%3")
        .arg(expected, heard, znt::testing::clockNote());
}

QString ZNTAdSpy::happens(Event event) const
{
    return znt::testing::waitFor([&] { return count(event) > 0; }, m_timeout)
        ? QString()
        : unmet(textOf(event));
}

QString ZNTAdSpy::once(Event event) const
{
    znt::testing::waitFor([&] { return count(event) > 0; }, m_timeout);
    return count(event) == 1 ? QString() : unmet(textOf(event) + " exactly once");
}

QString ZNTAdSpy::never(Event event) const
{
    return count(event) == 0 ? QString() : unmet("never " + textOf(event));
}

QString ZNTAdSpy::failsWith(qint64 code) const
{
    znt::testing::waitFor([&] { return count(Failed) > 0; }, m_timeout);
    return count(Failed) > 0 && m_errorCode == code
        ? QString()
        : unmet(QStringLiteral("a failure with code %1").arg(code));
}

QString ZNTAdSpy::hears(const QList<Event> &events) const
{
    znt::testing::waitFor([&] { return m_heard.size() >= events.size(); }, m_timeout);
    return m_heard == events ? QString() : unmet("exactly " + textsOf(events).join(", "));
}
