// Uploads or downloads the same file over and over until it is killed. Prints "." to standard output at each step.
//
//   transfer-loop upload <folder of the cloud> <local file>
//   transfer-loop download <folder of the cloud> <local file>

#include <contracts/NorlisCloudProtocol.h>

#include <QCoreApplication>

#include <cstdio>

using namespace Norlis::Social;

namespace {

void PrintStep()
{
    std::fputc('.', stdout);
    std::fflush(stdout);
}

void Upload(NorlisCloudProtocol& protocol, const QString& path)
{
    protocol.uploadFile(
        path, {}, [&protocol, path](qint64, RequestResult, const NorlisCloudSharingResult&) { Upload(protocol, path); },
        [](qint64, int) { PrintStep(); });
}

void Download(NorlisCloudProtocol& protocol, const QString& id, const QString& path)
{
    protocol.downloadFile(
        {{{NorlisCloudProtocol::ID, id}, {NorlisCloudProtocol::FILE_NAME, path}}, {}},
        [&protocol, id, path](qint64, RequestResult) { Download(protocol, id, path); },
        [](qint64, int) { PrintStep(); });
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    OAuth2::AuthInfo authInfo;
    authInfo.serviceUrl = QUrl::fromLocalFile(arguments.value(2));
    authInfo.replaceableFiles = OAuth2::ReplaceableFiles::All; // those of a loop that was killed
    NorlisCloudProtocol protocol(authInfo, "transfer-loop");
    const QString path = arguments.value(3);
    protocol.auth({}, [&](qint64, RequestResult) {
        if (arguments.value(1) == "upload") {
            Upload(protocol, path);
            return;
        }
        protocol.retriveFileList({},
                                 [&](qint64, RequestResult, const QList<NorlisCloudProtocol::File::FileInfo>& files) {
                                     Download(protocol, files.value(0).id, path);
                                 });
    });
    return QCoreApplication::exec();
}
