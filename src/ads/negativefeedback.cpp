#include "ads/negativefeedback.h"

#include "diagnostics/adtrace.h"
#include "diagnostics/log.h"

#include <ZNTAds/ZNTAdsManager.h>

namespace znt {

void sendNegativeFeedback(const QString &adId)
{
    ZNTAdTrace::note(ZNTAdTrace::Feedback, nullptr, adId);
    constexpr qint64 closed = 1;
    ZNTAdsManager::sharedInstance()->sendNegativeFeedbackWithType(closed, adId,
        QJsonValue::Undefined, [](bool success, const std::optional<ZNTError> &error) {
            if (success)
                logInfo("Negative feedback report successful");
            else
                logError("Negative feedback report failed: %1",
                    error.value_or(ZNTError()).localizedDescription());
        });
}

} // namespace znt
