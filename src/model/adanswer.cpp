#include "model/adanswer.h"

#include "diagnostics/log.h"
#include "support/json.h"

#include <QRandomGenerator>

namespace znt {

std::optional<QJsonArray> adsOfAnswer(const QJsonValue &answer)
{
    if (!answer.isObject()) {
        logError("Invalid response format: not a dictionary");
        return std::nullopt;
    }
    const qint64 code = json::integer(answer[u"code"]);
    if (code != 200) {
        logError("Invalid response code: %1", code);
        return std::nullopt;
    }
    const QJsonArray ads = answer[u"data"].toArray();
    if (ads.isEmpty()) {
        logError("No ad data available in response");
        return std::nullopt;
    }
    return ads;
}

QString randomText(const QJsonObject &ad, const QStringList &types)
{
    QStringList texts;
    const QJsonArray elements = ad[u"texts"].toArray();
    for (const auto &element : elements) {
        const QString content = json::string(element[u"content"]);
        if (!content.isNull() && types.contains(element[u"type"].toString()))
            texts.append(content);
    }
    return texts.isEmpty() ? QString()
                           : texts.at(QRandomGenerator::global()->bounded(texts.size()));
}

} // namespace znt
