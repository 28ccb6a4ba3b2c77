// The headers that nearly every source of this project reads.
#pragma once
#include <QtCore/QtCore>
#include <QtGui/QtGui>
#include <QtNetwork/QtNetwork>
#include <QtQml/QtQml>
#include <QtQuick/QtQuick>

#include <functional>
#include <memory>
#include <optional>
