// The three splash creatives by the manager's style numbers.
#pragma once

#include <QMetaObject>

class QString;
class ZNTSplashAdView;

namespace znt {

struct SplashStyle
{
    const char *name; // in log lines
    const QMetaObject *type;
    ZNTSplashAdView *(*create)();
};

// The plain picture's for every number that is not another's.
const SplashStyle &splashStyle(qint64 number);
// The QML file that draws a creative of that style.
QString qmlPartOf(const SplashStyle &style);

} // namespace znt
