// What the remote configuration brings.
#pragma once

#include <ZNTAds/ZNTInteractionCtrlArg.h>

#include <QJsonObject>

namespace znt {

// The first of its "ixCtrlArgs"; nothing when there is no such object.
ZNTADS_INTERNAL std::optional<ZNTInteractionCtrlArg> interactionCtrlArgOf(
    const QJsonObject &configuration);

} // namespace znt
