// Gives a C++ view its looks: one QML file of the library's module.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QVariant>

class QQuickItem;

namespace znt {

// Creates `name`.qml for `view`: an item that fills the view and knows it as its property `view`,
// set with `properties` before the first binding runs. Null, with a warning of Qt's, if it cannot
// be created.
//
// The looks belong to the view as a QObject child. The view's own destructor must delete them
// first, as their bindings read the view until they are gone.
//
// All looks share one engine of the library's own. It ends with the application object; looks that
// outlive it stay valid items whose bindings no longer follow.
ZNTADS_INTERNAL QQuickItem *createLooks(
    QQuickItem *view, const QString &name, QVariantMap properties = {});

// Loads `name`.qml, and what the first looks of a process need besides, in the background and in
// short turns of the event loop, so that createLooks() need not. Main thread.
ZNTADS_INTERNAL void prepareLooks(const QString &name);

} // namespace znt
