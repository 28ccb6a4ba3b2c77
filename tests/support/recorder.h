#pragma once

#include <QStringList>

#include <functional>

namespace znt::test {

// What a delegate has heard, in order.
struct Recorder
{
    QStringList heard;
    // Runs right after one was heard.
    std::function<void(const QString &)> then;

protected:
    void hear(const QString &what)
    {
        heard.append(what);
        if (then)
            then(what);
    }
};

} // namespace znt::test
