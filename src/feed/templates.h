// The nine templates by their numbers.
#pragma once

#include <QtGlobal>

class ZNTFeedAdView;

namespace znt {

// Null for a number that no template has.
ZNTFeedAdView *createTemplate(qint64 style);

} // namespace znt
