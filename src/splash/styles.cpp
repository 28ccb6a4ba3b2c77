#include "splash/styles.h"

#include <ZNTAds/ZNTShakeAdView.h>
#include <ZNTAds/ZNTSlideAdView.h>
#include <ZNTAds/ZNTSplashImageAdView.h>

#include <array>

namespace znt {

namespace {

template <class View>
constexpr SplashStyle styleOf(const char *name)
{
    return {name, &View::staticMetaObject, [] { return static_cast<ZNTSplashAdView *>(new View); }};
}

// The position of a style is its number.
constexpr std::array styles{
    styleOf<ZNTSplashImageAdView>("image"),
    styleOf<ZNTShakeAdView>("shake"),
    styleOf<ZNTSlideAdView>("slide"),
};

} // namespace

const SplashStyle &splashStyle(qint64 number)
{
    return styles[number > 0 && number < qint64(styles.size()) ? size_t(number) : 0];
}

QString qmlPartOf(const SplashStyle &style)
{
    return QString::fromLatin1(style.type->className()).mid(qsizetype(qstrlen("ZNT")));
}

} // namespace znt
