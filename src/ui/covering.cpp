#include "ui/covering.h"

#include "ui/safearea.h"

#include <QKeyEvent>
#include <QQuickItem>
#include <QQuickWindow>

namespace znt {

namespace {

// Above whatever the host has raised, beneath the popups of Qt Quick Controls unless they lie
// beside.
constexpr qreal top = 1'000'000;

void raise(QQuickItem *item)
{
    item->setZ(top);
    for (const QQuickItem *sibling : item->parentItem()->childItems())
        item->setZ(qMax(item->z(), sibling->z()));
}

void put(QQuickItem *item, QQuickItem *under)
{
    item->setParentItem(under);
    raise(item);
}

void layOut(const QQuickItem *under, QQuickItem *item, QQuickItem *bottomView)
{
    const double strip = bottomView ? bottomView->height() : 0;
    item->setSize({under->width(), under->height() - strip});
    if (bottomView) {
        bottomView->setPosition({0, item->height()});
        bottomView->setWidth(under->width());
    }
}

} // namespace

void layOver(QQuickItem *item, QQuickItem *under, QQuickItem *bottomView)
{
    const auto follow = [=, bottom = QPointer(bottomView)] { layOut(under, item, bottom); };
    QObject::connect(under, &QQuickItem::widthChanged, item, follow);
    QObject::connect(under, &QQuickItem::heightChanged, item, follow);
    follow();
    item->setParent(under);
    put(item, under);
    if (bottomView)
        put(bottomView, under);
}

Covering::Covering(QQuickItem *item)
    : m_item(item)
{
    item->installEventFilter(this);
    connect(item, &QQuickItem::windowChanged, this, &Covering::enter);
    for (const auto moved : {&QQuickItem::xChanged, &QQuickItem::yChanged,
             &QQuickItem::widthChanged, &QQuickItem::heightChanged})
        connect(item, moved, this, &Covering::updateSafeInsets);
    connect(item, &QQuickItem::parentChanged, this, &Covering::updateSafeInsets);
    connect(SafeArea::instance(), &SafeArea::changed, this, &Covering::updateSafeInsets);
    enter(item->window());
}

Covering::~Covering()
{
    enter(nullptr);
}

void Covering::setActive(bool active)
{
    m_isActive = active;
    active ? takeFocus() : m_focus.giveBack();
}

void Covering::enter(QQuickWindow *window)
{
    if (m_window) {
        m_window->removeEventFilter(this);
        m_window->disconnect(this);
    }
    m_window = window;
    if (!window) {
        m_focus.giveBack();
        return;
    }
    window->installEventFilter(this);
    connect(window, &QQuickWindow::widthChanged, this, &Covering::updateSafeInsets);
    connect(window, &QQuickWindow::heightChanged, this, &Covering::updateSafeInsets);
    updateSafeInsets();
    // Queued: in the middle of a move Qt settles the focus itself, at its end.
    QMetaObject::invokeMethod(this, &Covering::takeFocus, Qt::QueuedConnection);
}

void Covering::takeFocus()
{
    if (m_isActive)
        m_focus.lend(m_item);
}

void Covering::updateSafeInsets()
{
    const QMarginsF insets = safeInsetsOf(m_item);
    if (std::exchange(m_safeInsets, insets) != insets)
        Q_EMIT safeInsetsChanged();
}

bool Covering::eventFilter(QObject *watched, QEvent *event)
{
    // The host's shortcuts would come before any key event.
    const bool isShortcut = watched == m_window && event->type() == QEvent::ShortcutOverride;
    if (isShortcut && m_item->hasActiveFocus()) {
        event->accept();
        return true;
    }
    return watched == m_item && takeKey(event);
}

// Those that nothing in the item has taken.
bool Covering::takeKey(QEvent *event)
{
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)
        return false;
    event->accept();
    const auto *key = static_cast<QKeyEvent *>(event);
    const bool closes = key->key() == Qt::Key_Escape || key->key() == Qt::Key_Back;
    if (closes && event->type() == QEvent::KeyPress)
        Q_EMIT closeKeyPressed();
    return true;
}

} // namespace znt
