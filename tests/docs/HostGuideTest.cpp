// What docs/host.md shows, as an editor would have it, over a folder as the cloud.

#include <host/account/CloudAccount.h>
#include <host/account/ServiceAddress.h>
#include <host/CloudDocumentsModel.h>
#include <host/session/CloudSession.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace Norlis::Test {

namespace {

using PDF::Cloud::AbstractCloudManager;
using Status = PDF::FileInfo::CloudStatus;

/// The user's answers, and what the user is told.
struct User {
    QString password;
    bool replaces = false;
    QStringList told;
};

class EditorWindow : public QObject {
public:
    EditorWindow(User& user, const QString& programFolder, const QString& service);

    void SignIn();
    void Save(const QString& path);
    void Fetch(const QString& id, const QString& folder);

    User& user;
    const std::shared_ptr<Host::CloudAccountSettings> settings;
    Host::CloudAccount account;
    Host::CloudSession session;
    Host::CloudDocumentsModel documents;

private:
    void AskForPassword();
    void Send(const QString& path, const QString& id);
    bool MayReplace(const QString& name);
    void Tell(const QString& text)
    {
        user.told << text;
    }

    Status StateOf(const QString& id) const
    {
        return static_cast<Status>(documents.index(documents.RowOf(id)).data(documents.StateRole).toInt());
    }

    QString NameOf(const QString& id) const
    {
        return documents.index(documents.RowOf(id)).data(documents.NameRole).toString();
    }
};

EditorWindow::EditorWindow(User& user, const QString& programFolder, const QString& service)
    : user(user),
      settings(std::make_shared<Host::CloudAccountSettings>(programFolder)),
      account(settings, Host::ServiceAddress(service)),
      session(account.DataFolder(), account.AuthInfo()),
      documents(session.Documents(), session.CloudSizes())
{
    const auto& cloud = session.Cloud();
    connect(&cloud, &AbstractCloudManager::AuthorizationCompleted, &session, &Host::CloudSession::Refresh);
    connect(&cloud, &AbstractCloudManager::AuthorizationRequired, this, &EditorWindow::AskForPassword);
    connect(&session, &Host::CloudSession::LocalCopyRead, this, &EditorWindow::Send);
    connect(&session, &Host::CloudSession::Failed, this,
            [this](const Host::CloudProblem& problem) { Tell(problem.Text()); });
    session.RefreshEvery(std::chrono::minutes(1));
}

void EditorWindow::SignIn()
{
    const QString token = account.Token(); // kept by Remember; for a folder always there
    if (token.isEmpty()) {
        AskForPassword();
    } else {
        session.Cloud().Authorization(token);
    }
}

void EditorWindow::AskForPassword()
{
    account.Remember(user.password);
    session.Cloud().Authorization(user.password);
}

bool EditorWindow::MayReplace(const QString&)
{
    return user.replaces;
}

void EditorWindow::Save(const QString& path)
{
    session.ReadLocalCopy(path); // of several copies, this is the one
}

void EditorWindow::Send(const QString& path, const QString& id)
{
    if (id.isEmpty()) {
        session.Upload({path});
    } else if (StateOf(id) != Status::ChangedOnBothSides) {
        session.UploadChanges(id);
    } else if (MayReplace(NameOf(id))) {
        session.ReplaceInCloud(id);
    }
}

void EditorWindow::Fetch(const QString& id, const QString& folder)
{
    if (StateOf(id) == Status::ChangedLocally || StateOf(id) == Status::ChangedOnBothSides) {
        Tell("Your copy has changes, and stays. The one in the cloud is put into another folder.");
    }
    session.Download(id, folder);
}

} // namespace

class HostGuideTest : public testing::Test {
protected:
    void SetUp() override
    {
        for (const char* name : {"cloud", "here", "there"}) {
            ASSERT_TRUE(QDir(root.path()).mkdir(name));
        }
        editor = std::make_unique<EditorWindow>(user, root.filePath("data"), root.filePath("cloud"));
        QSignalSpy refreshed(&editor->session, &Host::CloudSession::ListRefreshed);
        editor->SignIn();
        ASSERT_TRUE(refreshed.wait(timeout));
    }

    QString Write(const QString& name, const QByteArray& content)
    {
        QFile file(root.filePath(name));
        EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(content) == content.size());
        return file.fileName();
    }

    QByteArray Read(const QString& name) const
    {
        QFile file(root.filePath(name));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    void Refresh()
    {
        QSignalSpy refreshed(&editor->session, &Host::CloudSession::ListRefreshed);
        editor->session.Refresh();
        ASSERT_TRUE(refreshed.wait(timeout));
    }

    /// Saves and waits for the end, good or bad.
    void Save(const QString& path)
    {
        QSignalSpy uploaded(&editor->session, &Host::CloudSession::DocumentUploaded);
        QSignalSpy failed(&editor->session, &Host::CloudSession::Failed);
        editor->Save(path);
        ASSERT_TRUE(QTest::qWaitFor([&] { return uploaded.count() + failed.count() > 0; }, timeout));
    }

    static constexpr int timeout = 20'000; // milliseconds; only a failing test waits for so long
    const QTemporaryDir root;
    User user;
    std::unique_ptr<EditorWindow> editor;
};

TEST_F(HostGuideTest, WhatIsSavedFirstIsANewDocumentAndThenReplacesIt)
{
    const auto path = Write("here/plan.pdf", "plan");
    Save(path);
    EXPECT_EQ(editor->documents.rowCount(), 1);
    Write("here/plan.pdf", "a better plan");
    Save(path);
    EXPECT_EQ(Read("cloud/plan.pdf"), "a better plan");
    EXPECT_EQ(editor->documents.rowCount(), 1);
    EXPECT_EQ(user.told, QStringList());
}

TEST_F(HostGuideTest, SaveThatIsNotUploadedIsShownWhenTheLocalCopyIsRead)
{
    const auto path = Write("here/plan.pdf", "plan");
    Save(path);
    Write("here/plan.pdf", "a better plan");
    const auto row = editor->documents.index(0);
    EXPECT_EQ(row.data(Host::CloudDocumentsModel::StateRole).toInt(), static_cast<int>(Status::InSync));
    QSignalSpy read(&editor->session, &Host::CloudSession::LocalCopyRead);
    editor->session.ReadLocalCopy(path);
    ASSERT_TRUE(read.wait(timeout));
    EXPECT_EQ(row.data(Host::CloudDocumentsModel::StateRole).toInt(), static_cast<int>(Status::ChangedLocally));
}

TEST_F(HostGuideTest, WhatSomebodyElseHasChangedIsReplacedOnlyIfTheUserSaysSo)
{
    const auto path = Write("here/plan.pdf", "plan");
    Save(path);
    Write("cloud/plan.pdf", "somebody's plan");
    Write("here/plan.pdf", "a better plan");
    Save(path);
    EXPECT_EQ(user.told.size(), 1);
    EXPECT_EQ(Read("cloud/plan.pdf"), "somebody's plan");

    Refresh();
    QSignalSpy read(&editor->session, &Host::CloudSession::LocalCopyRead);
    editor->Save(path);
    ASSERT_TRUE(read.wait(timeout));
    EXPECT_EQ(Read("cloud/plan.pdf"), "somebody's plan");
    user.replaces = true;
    Save(path);
    EXPECT_EQ(Read("cloud/plan.pdf"), "a better plan");
}

TEST_F(HostGuideTest, OfTwoCopiesTheOneThatIsSavedIsSent)
{
    const auto first = Write("here/plan.pdf", "plan");
    Save(first);
    QSignalSpy downloaded(&editor->session, &Host::CloudSession::DocumentDownloaded);
    editor->Fetch(editor->session.DocumentAt(first), root.filePath("there"));
    ASSERT_TRUE(downloaded.wait(timeout));
    Write("here/plan.pdf", "a better plan");
    Save(first);
    EXPECT_EQ(Read("cloud/plan.pdf"), "a better plan");
    EXPECT_EQ(editor->documents.rowCount(), 1);
}

TEST_F(HostGuideTest, TheVersionInTheCloudIsPutBesideACopyThatHasChanges)
{
    const auto path = Write("here/plan.pdf", "plan");
    Save(path);
    const auto id = editor->session.DocumentAt(path);
    Write("cloud/plan.pdf", "somebody's plan");
    Write("here/plan.pdf", "a better plan");
    Refresh();
    QSignalSpy downloaded(&editor->session, &Host::CloudSession::DocumentDownloaded);
    editor->Fetch(id, root.filePath("there"));
    ASSERT_TRUE(downloaded.wait(timeout));
    EXPECT_EQ(user.told.size(), 1);
    EXPECT_EQ(Read("there/plan.pdf"), "somebody's plan");
    EXPECT_EQ(Read("here/plan.pdf"), "a better plan");
}

} // namespace Norlis::Test
