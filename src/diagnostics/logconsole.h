// The console, which is standard error, and may be a pipe that nobody reads.
#pragma once

#include <QByteArray>

namespace znt {

class LogConsole
{
public:
    // Waits a moment for a console that takes nothing. What it does not take then is dropped, and
    // from then on nothing waits for it.
    void write(const QByteArray &text);

private:
    bool m_isStalled = false;
};

} // namespace znt
