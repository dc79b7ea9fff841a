#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace Norlis::Test {

/// What an encrypting server shows and proves itself with.
struct ServerCertificate {
    QByteArray certificate; ///< PEM
    QByteArray key;         ///< PEM, elliptic curve
};

/// Signs certificates that nobody trusts but who is told to. Made by the program openssl; failures are
/// std::runtime_error.
class CertificateAuthority {
public:
    CertificateAuthority();

    /// Its own certificate, for clients that are to trust what it signs.
    QString File() const;

    /// \param address IP address that the certificate is for
    /// \param days    of validity, from now on; negative makes an expired one
    ServerCertificate Issue(const QString& address = "127.0.0.1", int days = 1) const;

private:
    QTemporaryDir folder;
};

} // namespace Norlis::Test
