// The QML part of a C++ view: one QML file of the library's module that draws what the view
// decides.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QPointF>
#include <QQuickItem>
#include <QVariant>

namespace znt {

// Creates the part, is how it reports what the user does, and deletes it.
//
// The root of the QML file fills the view and has the required properties `view` and `part`. It
// reports by calling tap(), pan() and close(); each is notified in an event-loop iteration of its
// own, because whoever hears of it may destroy the view, and the report may come from the middle of
// an event. A destroyed part notifies of nothing any more.
//
// The view keeps it as the last of its members: bindings read the view until they are gone.
class ZNTADS_INTERNAL QmlPart : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to a view")

public:
    // Loads `name`.qml; its root gets the further properties before the first binding runs. Where
    // it cannot be created, Qt warns and there is no root. All parts share one engine of the
    // library's own. It ends with the application object; a part that outlives it stays as it is
    // drawn.
    QmlPart(QQuickItem *view, const QString &name, QVariantMap properties = {});
    ~QmlPart() override;

    QQuickItem *root() const { return m_root; }
    // The item of that objectName; warns when the file has none, so ask at construction. Null then.
    QQuickItem *subview(const char *objectName) const;

    Q_INVOKABLE void tap();
    // In points of the view, and points a second.
    Q_INVOKABLE void pan(QPointF translation, QPointF velocity);
    Q_INVOKABLE void close();

Q_SIGNALS:
    void tapped();
    void panned(QPointF translation, QPointF velocity);
    void closeRequested();

private:
    QPointer<QQuickItem> m_root;
};

// Whether views can be shown: they need fonts and a screen, which only a QGuiApplication has.
ZNTADS_INTERNAL bool canShowViews();

// Loads `name`.qml, and what the first part of a process needs besides, in short event-loop
// iterations, so that a QmlPart need not. From any thread.
ZNTADS_INTERNAL void prepareQmlPart(const QString &name);

} // namespace znt
