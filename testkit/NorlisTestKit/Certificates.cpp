#include "Certificates.h"

#include <QFile>
#include <QProcess>

#include <stdexcept>

namespace Norlis::TestKit {

namespace {

const QStringList newKey = {"-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes"};

void Run(const QString& folder, const QStringList& arguments)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start("openssl", arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        throw std::runtime_error("openssl: " + process.errorString().toStdString() + ' ' +
                                 process.readAllStandardError().toStdString());
    }
}

QByteArray Read(const QString& path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

} // namespace

CertificateAuthority::CertificateAuthority()
{
    Run(folder.path(),
        QStringList{"req", "-x509", "-keyout", "ca.key", "-out", "ca.pem", "-subj", "/CN=Norlis tests", "-days", "2"} +
            newKey);
}

QString CertificateAuthority::File() const
{
    return folder.filePath("ca.pem");
}

ServerCertificate CertificateAuthority::Issue(const QString& address, int days) const
{
    QFile extensions(folder.filePath("extensions"));
    extensions.open(QIODevice::WriteOnly);
    extensions.write("subjectAltName=IP:" + address.toLatin1() + '\n');
    extensions.close();
    Run(folder.path(),
        QStringList{"req", "-keyout", "server.key", "-out", "server.csr", "-subj", "/CN=" + address} + newKey);
    Run(folder.path(), {"x509", "-req", "-in", "server.csr", "-CA", "ca.pem", "-CAkey", "ca.key", "-days",
                        QString::number(days), "-extfile", "extensions", "-out", "server.pem"});
    return {Read(folder.filePath("server.pem")), Read(folder.filePath("server.key"))};
}

} // namespace Norlis::TestKit
