// One error, with what is known of the device and the host application, sent to the server.
#pragma once

#include <QString>

namespace znt {

// From any thread. A null text is left out. Sent once, or not at all without an application object.
void reportError(const QString &summary, const QString &details);
// From any thread; on until set otherwise.
void setErrorReportsEnabled(bool enabled);

} // namespace znt
