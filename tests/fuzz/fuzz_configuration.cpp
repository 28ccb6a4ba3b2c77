// The remote configuration, and what a run before, or somebody else, has left in the settings.
#include "door.h"

#include "core/configuration.h"
#include "core/userdefaults.h"
#include "support/json.h"

#include <ZNTAds/ZNTAdsManager.h>
#include <ZNTAds/ZNTFreqCtrlArg.h>

using namespace znt;

void enter(const QByteArray &bytes)
{
    const QJsonValue value = json::parse(bytes).value;
    const auto interaction = interactionCtrlArgOf(value.toObject());
    ZNTAdsManager *const manager = ZNTAdsManager::sharedInstance();
    if (interaction)
        manager->setInteractionCtrlArg(*interaction);
    manager->setFreqCtrlArg(ZNTFreqCtrlArg::initWithDictionary(value));
    userdefaults::store({{"ZNTAds_InteractionCtrlArg", value}, {"ZNTAds_BaseUrl", value},
        {"ZNTAds_FreqCtrlArg", QString::fromUtf8(bytes)}});
    manager->loadInteractionCtrlArgFromLocal();
    userdefaults::read("ZNTAds_FreqCtrlArg");
}
