// Calling the host back: it may have died, and it may destroy the caller in the call.
#pragma once

#include <ZNTAds/ZNTDelegateRef.h>

namespace znt {

// Calls the method when there is a delegate; false when the caller has not survived that.
template <class Protocol, class... Parameters, class... Arguments>
bool notify(const QObject *caller, const ZNTDelegateRef<Protocol> &delegate,
    void (Protocol::*method)(Parameters...), Arguments &&...arguments)
{
    const QPointer<const QObject> self(caller);
    if (Protocol *receiver = delegate.get())
        (receiver->*method)(std::forward<Arguments>(arguments)...);
    return !self.isNull();
}

} // namespace znt
