#include "model/trackinglists.h"

#include "diagnostics/log.h"

#include <cstring>

namespace znt {

namespace {

constexpr TrackingTexts viewTexts{"Processed %1 view URLs", "Converted single view URL to array"};
constexpr TrackingTexts clickTexts{"Processed click URLs", "Converted single click URL to array"};

void logList(const TrackingTexts &texts, const QJsonArray &list)
{
    if (std::strstr(texts.list, "%1"))
        logInfo(texts.list, list.size());
    else
        logInfo(texts.list);
}

template <class List>
void readList(List &list, const QJsonValue &value, const TrackingTexts &texts)
{
    if (value.isString()) {
        list = QJsonArray{value};
        logInfo(texts.single);
    } else if (value.isArray()) {
        list = value.toArray();
        logList(texts, value.toArray());
    }
}

void readClickByView(QJsonValue &list, const QJsonValue &click, const QJsonValue &view)
{
    if (view.isString()) {
        list = click.isUndefined() ? QJsonArray() : QJsonArray{click};
        logInfo(clickTexts.single);
    } else if (view.isArray()) {
        list = click;
        logInfo(clickTexts.list);
    }
}

} // namespace

void readTrackingLists(TrackingLists &lists, const QJsonObject &ad, ClickForm clickForm,
    const TrackingTexts &dpEventTexts)
{
    const QJsonValue trackInfo = ad[u"trackInfo"];
    if (!trackInfo.isObject())
        return;
    logInfo("Processing tracking information");
    const QJsonValue view = trackInfo[u"viewUrl3rd"];
    const QJsonValue click = trackInfo[u"clickUrl3rd"];
    readList(lists.view, view, viewTexts);
    if (clickForm == ClickForm::OfView)
        readClickByView(lists.click, click, view);
    else
        readList(lists.click, click, clickTexts);
    readList(lists.dpEvent, trackInfo[u"dpEventUrls"], dpEventTexts);
}

} // namespace znt
