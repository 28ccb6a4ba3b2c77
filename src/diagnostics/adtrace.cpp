#include "diagnostics/adtrace.h"

std::atomic<ZNTAdTrace::Listener> ZNTAdTrace::s_listener = nullptr;

void ZNTAdTrace::setListener(Listener listener)
{
    s_listener = listener;
}

void ZNTAdTrace::note(Step step, const QObject *source, const QString &text)
{
    if (const Listener listener = s_listener)
        listener(step, source, text);
}
