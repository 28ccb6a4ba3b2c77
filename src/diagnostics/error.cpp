#include <ZNTAds/ZNTError.h>

#include "diagnostics/log.h"

QString ZNTError::toString() const
{
    return znt::logLine("Error Domain=%1 Code=%2 \"%3\"", m_domain, m_code, m_localizedDescription);
}
