// Where the exchange is: two bases that can be replaced until the host has registered.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QUrl>

namespace znt {

enum class Endpoint { AdRequest, Configuration, NegativeFeedback, LogUpload };

ZNTADS_INTERNAL QUrl endpoint(Endpoint endpoint);
// A base that is empty or has the wrong scheme is left as it was; false then.
ZNTADS_INTERNAL bool setEndpointBases(const QUrl &https, const QUrl &http);

} // namespace znt
