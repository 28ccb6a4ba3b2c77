#include "stage.h"

#include "surroundings.h"

#include <QQmlComponent>
#include <QQuickItem>

namespace player {

using namespace Qt::StringLiterals;

Stage::Stage(const QString &title, QSize size)
{
    m_window.setTitle(title);
    m_window.resize(size);
    m_window.contentItem()->setSize(size); // an ad may come before the window system has said so
    m_window.show();
}

Stage::~Stage() = default;

QQuickItem *Stage::make(const QString &name)
{
    QQmlComponent component(&m_engine, QUrl(u"qrc:/player/%1.qml"_s.arg(name)));
    auto *item = qobject_cast<QQuickItem *>(component.create());
    if (!item)
        qFatal("%s", qUtf8Printable(component.errorString()));
    QQmlEngine::setObjectOwnership(item, QQmlEngine::CppOwnership);
    return item;
}

QQuickItem *Stage::fill(const QString &name)
{
    QQuickItem *item = make(name);
    item->setParentItem(m_window.contentItem());
    return item;
}

void Stage::setCaption(const QString &caption)
{
    if (isOffScreen())
        return;
    if (!m_caption) {
        m_caption.reset(make(u"Caption"_s));
        m_caption->setParentItem(m_window.contentItem());
    }
    m_caption->setProperty("text", caption);
}

bool Stage::screenshot(const QString &path)
{
    const double opacity = m_caption ? m_caption->opacity() : 0;
    if (m_caption)
        m_caption->setOpacity(0);
    const bool saved = m_window.grabWindow().save(path, "PNG");
    if (m_caption)
        m_caption->setOpacity(opacity);
    return saved;
}

} // namespace player
