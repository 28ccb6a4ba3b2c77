#pragma once

#include <QtCore/QPointer>

#include <cstddef>

/// A weak reference to an object that implements a delegate protocol.
///
/// It becomes empty by itself when the object is destroyed, so a delegate may die at any time.
template <class Protocol>
class ZNTDelegateRef
{
public:
    ZNTDelegateRef() = default;
    /// Refers to nothing.
    ZNTDelegateRef(std::nullptr_t) { }
    /// Refers to @p object, any QObject that also implements @p Protocol; null gives an empty one.
    /// A pointer is converted by itself where a reference is asked for.
    template <class Object>
    ZNTDelegateRef(Object *object)
        : m_object(object)
        , m_protocol(object)
    {
    }

    /// The protocol of the object, or null when there is no object or it has died.
    Protocol *get() const { return m_object ? m_protocol : nullptr; }
    /// The object itself, or null.
    QObject *object() const { return m_object; }

private:
    QPointer<QObject> m_object;
    Protocol *m_protocol = nullptr;
};
