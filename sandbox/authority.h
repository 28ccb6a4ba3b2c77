// The exchange's own certificate authority and server certificate, kept under its state folder.
#pragma once

#include <QSslCertificate>
#include <QSslKey>
#include <QString>

#include <optional>

namespace sandbox {

struct Credentials
{
    QString caFile; // PEM, what a client has to trust
    QSslCertificate ca;
    QSslCertificate server; // for localhost and 127.0.0.1
    QSslKey serverKey;
};

// What the folder holds, as far as it is sound and still valid; what is missing is made and kept
// there, the private keys readable by their owner alone. On failure nothing, and `error` says why.
std::optional<Credentials> credentials(const QString &stateDir, QString *error);

} // namespace sandbox
