#pragma once

#include <QtGlobal>

QT_FORWARD_DECLARE_CLASS(QQuickItem)
QT_FORWARD_DECLARE_CLASS(QQuickWindow)

/// The inspector of a debug build: a panel that shows the ads of this run, what happened to each,
/// how much of it is visible, and why it counts or does not.
class ZNTInspector
{
public:
    ZNTInspector() = delete;

    /// Registers the QML module ZNTAds.Inspector: AdInspector, the panel, an item over the window
    /// that it is in; AdJournal and AdExplanation. Once, before QML is loaded. Main thread.
    static void registerTypes();

    /// Puts a panel into the window, closed to a button in its corner; F12 opens it as well. For
    /// hosts without QML of their own. Main thread.
    /// @param window the panel belongs to its content item; null: nothing happens
    /// @return the panel; null when there is none
    static QQuickItem *attach(QQuickWindow *window);
};
