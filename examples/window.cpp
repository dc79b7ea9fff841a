// A window with the documents of a folder or of a WebDAV server, which fetches what is activated:
//
//   window FOLDER
//   PASSWORD=... window https://anna@cloud.example/dav/

#include <host/account/CloudAccount.h>
#include <host/account/ServiceAddress.h>
#include <host/CloudDocumentsModel.h>
#include <host/session/CloudSession.h>

#include <QApplication>
#include <QDir>
#include <QListView>
#include <QStandardPaths>

#include <cstdio>

using namespace Norlis;

int main(int argc, char** argv)
try {
    QApplication application(argc, argv);
    const QString data = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    const Host::CloudAccount account(std::make_shared<Host::CloudAccountSettings>(data),
                                     Host::ServiceAddress(application.arguments().value(1)));
    Host::CloudSession session(account.DataFolder(), account.AuthInfo());
    Host::CloudDocumentsModel documents(session.Documents(), session.CloudSizes());
    QListView view;
    view.setModel(&documents);
    view.show();

    QObject::connect(&view, &QListView::activated, &session, [&](const QModelIndex& row) {
        session.Download(row.data(Host::CloudDocumentsModel::IdRole).toString(), QDir::currentPath());
    });
    QObject::connect(&session, &Host::CloudSession::Failed, &view,
                     [&](const Host::CloudProblem& problem) { view.setWindowTitle(problem.Text()); });
    QObject::connect(&session.Cloud(), &PDF::Cloud::AbstractCloudManager::AuthorizationCompleted, &session,
                     &Host::CloudSession::Refresh);
    session.RefreshEvery(std::chrono::minutes(1));
    session.Cloud().Authorization(qEnvironmentVariable("PASSWORD", "a folder takes any"));
    return application.exec();
} catch (const std::exception& problem) {
    std::fprintf(stderr, "%s\n", problem.what());
    return 1;
}
