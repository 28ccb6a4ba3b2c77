#include "core/tracking.h"

#include "diagnostics/log.h"
#include "support/application.h"
#include "support/sessions.h"

#include <QJsonArray>

namespace znt {

namespace {

// Lives in the answers still to come; the last one to let go of it closes the group.
class Group
{
public:
    Group(const FiringTexts &texts, std::function<void()> finished)
        : m_texts(texts)
        , m_finished(std::move(finished))
    {
    }
    Q_DISABLE_COPY_MOVE(Group)

    void answered(const QString &url, const HttpAnswer &answer) const
    {
        const QString where = m_texts.namesUrl ? u'[' + url + u']' : QLatin1String("");
        if (answer.error)
            logError("%1 failed%2: %3", QString::fromUtf8(m_texts.name), where, *answer.error);
        else
            logInfo("%1 successful%2", QString::fromUtf8(m_texts.name), where);
    }

    ~Group()
    {
        onMainThread([closing = m_texts.closing, finished = std::move(m_finished)] {
            if (closing)
                logInfo(closing);
            if (finished)
                finished();
        });
    }

private:
    const FiringTexts m_texts;
    std::function<void()> m_finished;
};

} // namespace

void fireTracking(const QJsonValue &urls, const FiringTexts &texts, std::function<void()> finished)
{
    const QJsonArray list = urls.toArray();
    if (list.isEmpty())
        return;

    logInfo(texts.opening);
    const auto group = std::make_shared<Group>(texts, std::move(finished));
    for (const QJsonValue &element : list) {
        const QString url = element.toString();
        if (url.isEmpty())
            continue;
        sendHttp(Session::Shared, {.url = QUrl::fromEncoded(url.toUtf8(), QUrl::TolerantMode)},
            [group, url](const HttpAnswer &answer) { group->answered(url, answer); });
    }
}

} // namespace znt
