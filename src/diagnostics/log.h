// The library's own way to the logger: formats only what will be used.
#pragma once

#include <ZNTAds/ZNTLogManager.h>

#include <array>
#include <charconv>
#include <cstring>
#include <type_traits>

namespace znt {

inline QString logText(const QString &text)
{
    return text.isNull() ? QStringLiteral("(null)") : text;
}
inline QString logText(const ZNTError &error)
{
    return error.toString();
}
template <class Number>
requires std::is_arithmetic_v<Number> QString logText(Number number)
{
    return QString::number(number);
}

template <class... Args>
QString logLine(const char *format, const Args &...args)
{
    if constexpr (sizeof...(args) == 0)
        return QString::fromUtf8(format);
    else
        return QString::fromUtf8(format).arg(logText(args)...);
}

template <class... Args>
void logInfo(const char *format, const Args &...args)
{
    ZNTLogManager *log = ZNTLogManager::sharedInstance();
    if (log->isEnabled())
        log->logInfo(logLine(format, args...));
}

template <class... Args>
void logWarning(const char *format, const Args &...args)
{
    ZNTLogManager *log = ZNTLogManager::sharedInstance();
    if (log->isEnabled())
        log->logWarning(logLine(format, args...));
}

// A number with so many decimals, rounded as printf does.
inline QString fixedPoint(double number, int decimals)
{
    std::array<char, 400> text;
    const auto end =
        std::to_chars(text.begin(), text.end(), number, std::chars_format::fixed, decimals).ptr;
    return QString::fromLatin1(text.data(), end - text.begin());
}

// A line that may have a place for the count.
inline void logCount(const char *format, qsizetype count)
{
    if (std::strstr(format, "%1"))
        logInfo(format, count);
    else
        logInfo(format);
}

// An error is reported to the server even when logging is off.
template <class... Args>
void logError(const char *format, const Args &...args)
{
    ZNTLogManager::sharedInstance()->logError(logLine(format, args...));
}

} // namespace znt
