#include "dump.h"

#include <QColor>
#include <QJsonArray>
#include <QQuickItem>

#include <algorithm>

namespace player {

using namespace Qt::StringLiterals;

namespace {

// The item's own flag. An item of the library keeps it apart; of others only the effective one is
// known, which says nothing under a hidden parent.
bool isShown(const QQuickItem *item)
{
    const QVariant hidden = item->property("hidden");
    if (hidden.isValid())
        return !hidden.toBool();
    const QQuickItem *parent = item->parentItem();
    return item->isVisible() || (parent && !parent->isVisible());
}

// Whether it makes no difference to its children. Opacity does in the window's content alone, which
// is the host's; in a helper it is a running animation.
bool isPlain(const QQuickItem *item)
{
    const bool isOpaque = item->opacity() == 1 || item->parentItem();
    return isShown(item) && isOpaque && !item->clip() && item->rotation() == 0
        && item->scale() == 1;
}

// By the class of the item or the nearest base of it that is known; a class that QML defines is
// called by its file's name and a number.
QString knownType(const QQuickItem *item)
{
    static const QStringList types{u"View"_s, u"ImageView"_s, u"Label"_s, u"Button"_s};
    for (const QMetaObject *at = item->metaObject(); at; at = at->superClass()) {
        const QString name =
            QString::fromLatin1(at->className()).section(u':', -1).section(u'_', 0, 0);
        if (types.contains(name) || name.startsWith(u"ZNT"_s))
            return name;
    }
    return {};
}

QString typeOf(const QQuickItem *item)
{
    const QString type = knownType(item);
    return type.isEmpty() ? u"View"_s : type;
}

// An item that only helps drawing is left out, and its children take its place.
bool isHelper(const QQuickItem *item)
{
    return item->objectName().isEmpty() && knownType(item).isEmpty();
}

QString colorName(const QVariant &value)
{
    return value.value<QColor>().name(QColor::HexArgb);
}

struct Trait
{
    const char *name;
    QJsonValue (*read)(const QVariant &value);
};

QJsonValue asIs(const QVariant &value)
{
    return QJsonValue::fromVariant(value);
}

const Trait traits[] = {
    {"text", asIs},
    {"textColor", [](const QVariant &value) { return QJsonValue(colorName(value)); }},
    {"backgroundColor", [](const QVariant &value) { return QJsonValue(colorName(value)); }},
    {"cornerRadius", asIs},
    {"fontSize", asIs},
    {"bold", asIs},
    {"contentMode", asIs},
    {"hasImage", asIs},
};

QJsonArray childrenOf(const QQuickItem *item, const QPointF &offset);

QJsonObject describe(const QQuickItem *item, const QPointF &offset)
{
    QJsonObject description{
        {u"name"_s, item->objectName()},
        {u"type"_s, typeOf(item)},
        {u"frame"_s,
            QJsonArray{
                offset.x() + item->x(), offset.y() + item->y(), item->width(), item->height()}},
        {u"visible"_s, isShown(item)},
        {u"opacity"_s, item->opacity()},
        {u"clip"_s, item->clip()},
        {u"children"_s, childrenOf(item, {})},
    };
    for (const Trait &trait : traits) {
        const QVariant value = item->property(trait.name);
        if (value.isValid())
            description.insert(QLatin1String(trait.name), trait.read(value));
    }
    return description;
}

// The offset is the place of helpers that were left out in between.
void appendTo(QJsonArray *siblings, const QQuickItem *item, const QPointF &offset)
{
    if (!isHelper(item)) {
        siblings->append(describe(item, offset));
        return;
    }
    const QJsonArray children = childrenOf(item, offset + item->position());
    if (children.isEmpty())
        return;
    if (!isPlain(item)) {
        siblings->append(describe(item, offset));
        return;
    }
    for (const auto &child : children)
        siblings->append(child);
}

QJsonArray childrenOf(const QQuickItem *item, const QPointF &offset)
{
    QJsonArray children;
    if (knownType(item) == u"Button"_s) // its title is told with it
        return children;
    for (const QQuickItem *child : item->childItems())
        appendTo(&children, child, offset);
    return children;
}

} // namespace

QJsonObject dumpOf(QQuickWindow &window)
{
    QJsonArray children;
    appendTo(&children, window.contentItem(), {});
    return {{u"size"_s, QJsonArray{window.width(), window.height()}}, {u"children"_s, children}};
}

QQuickItem *itemNamed(QQuickItem *root, const QString &name)
{
    QList<QQuickItem *> items{root};
    for (qsizetype i = 0; i < items.size(); ++i) {
        if (items.at(i)->objectName() == name)
            return items.at(i);
        items += items.at(i)->childItems();
    }
    return nullptr;
}

bool isOnScreen(const QQuickItem *item)
{
    if (!item->window() || !item->isVisible())
        return false;
    for (; item; item = item->parentItem()) {
        if (item->opacity() < 1)
            return false;
    }
    return true;
}

bool hasPictures(const QQuickItem *root)
{
    if (!root->isVisible())
        return true;
    for (const char *condition : {"hasImage", "ready"}) {
        const QVariant holds = root->property(condition);
        if (holds.isValid() && !holds.toBool())
            return false;
    }
    const QList<QQuickItem *> children = root->childItems();
    return std::all_of(children.begin(), children.end(), hasPictures);
}

} // namespace player
