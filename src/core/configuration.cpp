#include "core/configuration.h"

#include "support/json.h"

namespace znt {

std::optional<ZNTInteractionCtrlArg> interactionCtrlArgOf(const QJsonObject &configuration)
{
    const auto element = json::object(configuration.value(u"ixCtrlArgs").toArray().at(0));
    if (!element)
        return {};
    const auto number = [&element](
                            QStringView key) { return json::integer32(element->value(key)); };
    ZNTInteractionCtrlArg arg;
    arg.setAdType(number(u"adType"));
    arg.setAutoPlay(number(u"autoPlay"));
    arg.setCanClose(number(u"canClose"));
    arg.setCanSkip(number(u"canSkip"));
    arg.setClickArea(number(u"clickArea"));
    arg.setClickTriggerType(number(u"clickTriggerType"));
    arg.setCloseBtnPos(number(u"closeBtnPos"));
    arg.setCloseType(number(u"closeType"));
    arg.setSkipType(number(u"skipType"));
    arg.setSupportSelfRender(number(u"supportSelfRender"));
    if (const auto shake = json::object(element->value(u"shakeArgs").toArray().at(0)))
        arg.setShakeArgs({ZNTShakeSlopArg::initWithDictionary(*shake)});
    return arg;
}

} // namespace znt
