#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QtCore/QMetaType>
#include <QtCore/QString>

/// An error as it is given to the host: who found it, a number, and a human-readable text.
///
/// The domain is the reporting class's name ("ZNTSplashManager", "ZNTAdsManager", …),
/// "QNetworkReply" for a failed transfer (the code is a QNetworkReply::NetworkError) or
/// "QJsonParseError" for an answer that is no JSON (the code is a QJsonParseError::ParseError).
class ZNTADS_EXPORT ZNTError
{
    Q_GADGET
    Q_PROPERTY(QString domain READ domain)
    Q_PROPERTY(int code READ code)
    Q_PROPERTY(QString localizedDescription READ localizedDescription)

public:
    ZNTError() = default;
    /// For a host that has errors of its own to hand on, too.
    ZNTError(const QString &domain, int code, const QString &localizedDescription)
        : m_domain(domain)
        , m_code(code)
        , m_localizedDescription(localizedDescription)
    {
    }

    /// Who failed, and its number for that: the guide to errors lists all. Empty and 0 in a default
    /// one.
    QString domain() const { return m_domain; }
    int code() const { return m_code; }
    /// The human-readable text, in the language in which the library has it.
    QString localizedDescription() const { return m_localizedDescription; }
    /// Domain, code and text in one line, as log lines show an error.
    QString toString() const;

    friend bool operator==(const ZNTError &, const ZNTError &) = default;

private:
    QString m_domain;
    int m_code = 0;
    QString m_localizedDescription;
};

Q_DECLARE_METATYPE(ZNTError)
