// Lists the documents of a folder.
#include <NorlisCloud/NorlisCloudProtocolProxy.h>

#include <QGuiApplication>

#include <iostream>

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    Norlis::Social::OAuth2::AuthInfo authInfo;
    authInfo.serviceUrl = QUrl::fromLocalFile(application.arguments().value(1));
    Norlis::PDF::Cloud::NorlisCloudProtocolProxy cloud(authInfo, "consumer");
    cloud.auth({}, [&](qint64, int) {
        cloud.retriveFileList({}, [](qint64, int result, const auto& files) {
            for (const auto& file : files) {
                std::cout << file.name.toStdString() << '\n';
            }
            QCoreApplication::exit(result);
        });
    });
    return application.exec();
}
