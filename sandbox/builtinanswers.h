// What the exchange answers by itself. `${BASE}` in a body stands for the exchange's own address.
#pragma once

#include "answer.h"

#include <QStringList>

#include <optional>

namespace sandbox {

std::optional<Answer> builtInAnswer(const QString &position);
QStringList builtInPositions();

QJsonObject configuration();

} // namespace sandbox
