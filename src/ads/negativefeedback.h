// What every ad manager sends when its ad is closed.
#pragma once

#include <QString>

namespace znt {

// Tells the exchange that the ad was not wanted, and logs how that went.
void sendNegativeFeedback(const QString &adId);

} // namespace znt
