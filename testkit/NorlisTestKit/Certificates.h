#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace Norlis::TestKit {

/// What a TLS server identifies itself with.
struct ServerCertificate {
    QByteArray certificate; ///< PEM
    QByteArray key;         ///< PEM, elliptic curve
};

/// Signs certificates that are trusted only by clients that are told to.
///
///     const CertificateAuthority authority;
///     FaultServer server(authority.Issue());
///     authInfo.certificateFile = authority.File();
///
/// Needs the program openssl; failures are std::runtime_error. One authority is enough for all tests of a program.
class CertificateAuthority {
public:
    CertificateAuthority();

    /// Its own certificate, in PEM, for clients that are to trust what it signs. The file exists as long as the
    /// authority.
    QString File() const;

    /// \param address IP address that the certificate is for
    /// \param days    of validity, from now on; negative makes an expired one
    ServerCertificate Issue(const QString& address = "127.0.0.1", int days = 1) const;

private:
    QTemporaryDir folder;
};

} // namespace Norlis::TestKit
