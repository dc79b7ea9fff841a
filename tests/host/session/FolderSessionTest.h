#pragma once

#include <tests/support/Files.h>
#include <tests/support/SessionTest.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>

namespace Norlis::Test {

/// A session over a folder that plays the cloud.
class FolderSessionTest : public SessionTest {
protected:
    FolderSessionTest()
    {
        QDir().mkpath(cloud);
        service.serviceUrl = QUrl::fromLocalFile(cloud);
        Reopen();
        SignIn();
    }

    void SignIn()
    {
        QSignalSpy signedIn(&session->Cloud(), &PDF::Cloud::AbstractCloudManager::AuthorizationCompleted);
        session->Cloud().Authorization("token");
        ASSERT_TRUE(signedIn.wait(20'000));
    }

    QString Put(const QString& name, const QByteArray& content)
    {
        QFile file(cloud + '/' + name);
        EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(content) == content.size());
        return file.fileName();
    }

    void RefreshNow()
    {
        const auto refreshes = CountOf("ListRefreshed");
        session->Refresh();
        ASSERT_TRUE(WaitForEvent("ListRefreshed", refreshes + 1));
    }

    QString IdOf(const QString& name)
    {
        for (int index = 0; index < session->Documents().FilesCount(); ++index) {
            if (session->Documents().GetDocumentName(index) == name) {
                return session->Documents().GetDocumentId(index);
            }
        }
        return {};
    }

    const QString cloud = root.filePath("cloud");
};

} // namespace Norlis::Test
