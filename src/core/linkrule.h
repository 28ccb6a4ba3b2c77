// What a click may lead to.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QString>

namespace znt {

// The scheme in lower case; empty when the link does not begin with one. Schemes of one letter are
// drives and no schemes.
QString schemeOf(const QString &link);

// An untrusted link may lead to the web or to another application, never to a local file, a script,
// a network share or a tool of the system. It may be opened when
// - it is http or https with a host; or
// - its scheme is none that a system or a browser keeps for itself, what follows is no path (one
//   slash, unless the scheme has a point, or a backslash), and nothing in it is a link to a file, a
//   script or a share, or the attachment of a mail, however often it is escaped. Of an intent the
//   same holds for the scheme that it names; it may ask for no other action than to view, and names
//   no component, no type and none of Android's own applications but the browser and the store.
// Control characters, and more than 65,536 characters, are refused.
bool mayBeOpened(const QString &link);

} // namespace znt
