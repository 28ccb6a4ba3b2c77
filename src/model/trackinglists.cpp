#include "model/trackinglists.h"

#include "diagnostics/log.h"

namespace znt {

namespace {

constexpr TrackingTexts viewTexts{"Processed %1 view URLs", "Converted single view URL to array"};
constexpr TrackingTexts clickTexts{"Processed click URLs", "Converted single click URL to array"};

template <class List>
void readList(List &list, const QJsonValue &value, const TrackingTexts &texts)
{
    if (value.isString()) {
        list = QJsonArray{value};
        logInfo(texts.single);
    } else if (value.isArray()) {
        list = value.toArray();
        logCount(texts.list, value.toArray().size());
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

void readTrackingLists(TrackingLists &lists, const std::optional<TrackInfo> &info,
    ClickForm clickForm, const TrackingTexts &dpEventTexts)
{
    if (!info)
        return;
    logInfo("Processing tracking information");
    readList(lists.view, info->view, viewTexts);
    if (clickForm == ClickForm::OfView)
        readClickByView(lists.click, info->click, info->view);
    else
        readList(lists.click, info->click, clickTexts);
    readList(lists.dpEvent, info->dpEvent, dpEventTexts);
}

} // namespace znt
