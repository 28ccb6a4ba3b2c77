#pragma once

#include <QJsonDocument>
#include <QJsonObject>

namespace znt::test {

inline QJsonObject json(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).object();
}

} // namespace znt::test
