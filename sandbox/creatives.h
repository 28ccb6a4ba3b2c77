// The files behind the ads: pictures, logos and the video, the broken ones included.
#pragma once

#include "answer.h"

#include <optional>

namespace sandbox {

// What is called `name` directly in `dir`; nothing that lies outside it, whatever the name says.
std::optional<QByteArray> fileIn(const QString &dir, const QString &name);

// The exchange's own creatives, by name: the artwork that it carries, and pictures that are broken
// in one way each.
std::optional<Answer> builtInCreative(const QString &name);

Answer creative(const QString &name, const QByteArray &data);

// The part of a whole answer that the request's Range header asks for.
Answer ranged(const Request &request, Answer whole);

} // namespace sandbox
