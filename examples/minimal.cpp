// The least that a program needs to have cloud documents: signs in to a folder, sends one PDF, lists what is there.
//
//   minimal FOLDER FILE.pdf

#include <host/store/LocalFileSystem.h>
#include <host/store/Md5HashCalculator.h>
#include <NorlisCloud/NorlisCloudManager.h>
#include <NorlisCloud/NorlisCloudProtocolProxy.h>

#include <QGuiApplication>
#include <QUrl>

#include <iostream>

using namespace Norlis;

// The editor's own settings go here.
class NoRefresh : public PDF::Settings::ICloudAccountSettings {
public:
    bool IsAutoRefreshEnabled() override
    {
        return false;
    }
    int GetAutoRefreshInterval() override
    {
        return 0;
    }
};

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv); // previews are pixmaps
    if (argc != 3) {
        std::cerr << "usage: minimal FOLDER FILE.pdf\n";
        return 2;
    }
    const QString path = application.arguments().at(2);

    // Construct: the collaborators, then the manager over them.
    Social::OAuth2::AuthInfo authInfo;
    authInfo.serviceUrl = QUrl::fromLocalFile(application.arguments().at(1));
    authInfo.onFailure = [](const auto& failure) {
        std::cerr << failure.reason.toStdString() << ". " << failure.advice.toStdString() << '\n';
    };
    PDF::Cloud::NorlisCloudManager cloud(
        std::make_shared<PDF::Cloud::NorlisCloudProtocolProxy>(authInfo, "minimal example"),
        std::make_shared<Host::Md5HashCalculator>(), std::make_shared<Host::LocalFileSystem>(),
        std::make_shared<NoRefresh>());

    // Connect: every outcome is a signal.
    using Cloud = PDF::Cloud::AbstractCloudManager;
    const auto fail = [] { QCoreApplication::exit(1); };
    QObject::connect(&cloud, &Cloud::AuthorizationCompleted, &cloud, [&] { cloud.Upload(path); });
    QObject::connect(&cloud, &Cloud::AuthorizationFailed, &cloud, fail);
    QObject::connect(&cloud, &Cloud::UploadingProgressValueChanged, &cloud,
                     [](const QString&, int percent) { std::cout << percent << " %\n"; });
    QObject::connect(&cloud, &Cloud::UploadingFinished, &cloud, [&] { cloud.RetrieveFilesList(); });
    QObject::connect(&cloud, &Cloud::UploadingFileRequestError, &cloud, fail);
    QObject::connect(&cloud, &Cloud::RetrievingFilesListFinished, &cloud, [](const auto& documents) {
        for (const auto& document : documents) {
            std::cout << document->GetId() << "  " << document->GetRedactableCloudInfo()->GetFileName() << '\n';
        }
        QCoreApplication::quit();
    });
    QObject::connect(&cloud, &Cloud::RetrievingFilesListErrorRequested, &cloud, fail);

    // Call. A folder takes any token.
    cloud.Authorization("token");
    return application.exec();
} // Destroy: what is still running is cancelled, nothing is emitted.
