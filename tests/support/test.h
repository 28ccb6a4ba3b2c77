// What every test begins with: Qt, and what a test needs of it.
#pragma once

#include "pch.h"

#include <QSignalSpy>
#include <QTest>

namespace znt::test {

// Every warning of Qt or QML that a test does not expect fails it.
inline void failOnWarnings()
{
    QTest::failOnWarning(QRegularExpression(".?"));
}

inline QJsonObject json(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).object();
}

} // namespace znt::test
