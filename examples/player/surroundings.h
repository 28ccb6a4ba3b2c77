// What the process needs around it before the library is touched.
#pragma once

#include "options.h"

namespace player {

// Before the application object: where things are stored, and whether there is a display. False
// when nothing can be stored there.
bool settleProcess(const Options &options);

// After it: the application's name, its user defaults, the trusted authorities.
void settleApplication(const Options &options);

// By the environment, before the application object.
bool hasDisplay();
// With it.
bool isOffScreen();

// The stored keys of the library with their values.
QJsonObject storedDefaults();

} // namespace player
