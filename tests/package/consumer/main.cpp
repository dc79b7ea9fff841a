// Lists the documents of a folder.
#include <NorlisCloud/NorlisCloudProtocolProxy.h>

#include <QGuiApplication>

#include <iostream>

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::cerr << "usage: consumer FOLDER\n";
        return 2;
    }
    Norlis::Social::OAuth2::AuthInfo authInfo;
    authInfo.serviceUrl = QUrl::fromLocalFile(argv[1]);
    authInfo.onFailure = [](const auto& failure) {
        std::cerr << failure.reason.toStdString() << '\n';
        QCoreApplication::exit(1);
    };
    Norlis::PDF::Cloud::NorlisCloudProtocolProxy cloud(authInfo, "consumer");
    cloud.auth({}, [&](qint64, int signedIn) {
        if (signedIn != Norlis::Social::Success) {
            return; // onFailure has told why
        }
        cloud.retriveFileList({}, [](qint64, int result, const auto& files) {
            for (const auto& file : files) {
                std::cout << file.name.toStdString() << '\n';
            }
            QCoreApplication::exit(result);
        });
    });
    return application.exec();
}
