// Export macros and the version symbols of the library.
#pragma once

#include <QtCore/qglobal.h>

#ifdef ZNTADS_STATIC
#define ZNTADS_EXPORT
#elif defined(ZNTADS_LIBRARY)
#define ZNTADS_EXPORT Q_DECL_EXPORT
#else
#define ZNTADS_EXPORT Q_DECL_IMPORT
#endif

// Internal symbols are open to the project's own tests and benchmarks only.
#ifdef ZNTADS_OPEN_INTERNALS
#define ZNTADS_INTERNAL ZNTADS_EXPORT
#else
#define ZNTADS_INTERNAL
#endif

extern "C" {
/// The library's numeric version, 1.0. It is independent of ZNTAdsSDK::version() and of
/// ZNTAdsVersion.h.
ZNTADS_EXPORT extern const double ZNTAdsVersionNumber;
/// The library's build string.
ZNTADS_EXPORT extern const char *const ZNTAdsVersionString;
}

class QString;
/// An ad's style code "XDT", for the host's own comparisons.
ZNTADS_EXPORT extern const QString ZNTAdStyleXDT;
/// The style code "OTHER", for the host's own comparisons.
ZNTADS_EXPORT extern const QString ZNTAdStyleOther;
