// What all fuzz targets share. Each is a door through which bytes of others come in.
#pragma once

#include <QByteArray>

// What a target defines: has the library take the bytes.
void enter(const QByteArray &bytes);
