// A property of a value type in one line.
#pragma once

#include <QtCore/qobjectdefs.h>

#include <utility>

/// Declares the property @p name of a value type: a getter name(), the setter @p setter, and the
/// member m_name, which starts as the fourth argument or as its type's empty value.
///
/// In a Q_GADGET the property is one of the meta-object too, so QML reads and writes it. What
/// follows the macro in its class is private.
#define ZNT_PROPERTY(Type, name, setter, ...)                                                      \
    Q_PROPERTY(Type name READ name WRITE setter)                                                   \
public:                                                                                            \
    Type name() const                                                                              \
    {                                                                                              \
        return m_##name;                                                                           \
    }                                                                                              \
    void setter(Type value)                                                                        \
    {                                                                                              \
        m_##name = std::move(value);                                                               \
    }                                                                                              \
                                                                                                   \
private:                                                                                           \
    Type m_##name = Type(__VA_ARGS__)

namespace znt {
// The table of a record's fields, known to the library's sources alone.
template <class Record>
struct Fields;
} // namespace znt
