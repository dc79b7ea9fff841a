// What docs/embedding.md shows, as an editor would have it, over a folder as the cloud.

#include "EmbeddingEditor.h"

#include <NorlisTestKit/RecordingStore.h>
#include <tests/support/Waiting.h>

#include <QDir>
#include <QFile>
#include <QMetaMethod>
#include <QRegularExpression>
#include <QSet>
#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Norlis::Test {

namespace {

class EmbeddingGuideTest : public testing::Test {
protected:
    EmbeddingGuideTest()
    {
        for (const char* name : {"cloud", "here", "there"}) {
            QDir(folder.path()).mkdir(name);
        }
        Open();
    }

    void Open()
    {
        editor.reset();
        editor = std::make_unique<Editor>(store, PathOf("data"), QUrl::fromLocalFile(PathOf("cloud")));
        Run(&Cloud::RetrievingFilesListFinished, [&] { editor->SignIn("any"); });
    }

    template <typename Signal, typename Action>
    void Run(Signal signal, const Action& action)
    {
        QSignalSpy ended(editor->cloud.get(), signal);
        action();
        ASSERT_TRUE(ended.count() > 0 || ended.wait(30'000)) << editor->reason.toStdString();
    }

    void Save(const QString& name)
    {
        Run(&Cloud::UploadingFinished, [&] { editor->Save(PathOf("here/" + name)); });
    }

    void Fetch(const QString& name, const QString& to)
    {
        Run(&Cloud::DownloadingFinished, [&] { editor->Fetch(IdOf(name), PathOf(to)); });
    }

    void Refresh()
    {
        Run(&Cloud::RetrievingFilesListFinished, [&] { editor->cloud->RetrieveFilesList(); });
    }

    Status StatusOf(const QString& name) const
    {
        const auto document = editor->Document(name);
        return document ? document->GetCloudStatus() : Status::NoSuchDocument;
    }

    QString IdOf(const QString& name) const
    {
        const auto document = editor->Document(name);
        return document ? Host::IdOf(*document) : QString();
    }

    QString PathOf(const QString& name) const
    {
        return folder.filePath(name);
    }

    void Write(const QString& name, const QByteArray& content) const
    {
        QFile file(PathOf(name));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(content);
    }

    QByteArray Read(const QString& name) const
    {
        QFile file(PathOf(name));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    QStringList FilesIn(const QString& name) const
    {
        return QDir(PathOf(name)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir folder;
    std::shared_ptr<TestKit::RecordingStore> store = std::make_shared<TestKit::RecordingStore>();
    std::unique_ptr<Editor> editor;
};

TEST(EmbeddingGuidePageTest, EverySignalIsPromisedSomethingAndNoOtherIs)
{
    QFile file(NORLIS_PROJECT "/docs/embedding.md");
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    const QString page = QString::fromUtf8(file.readAll());
    const QString section = page.section("\n## Signals\n", 1).section("\n## ", 0, 0);

    QSet<QString> declared;
    for (const QMetaObject* type :
         {&PDF::Cloud::AbstractCloudManager::staticMetaObject, &PDF::AbstractFileManager::staticMetaObject}) {
        for (int index = type->methodOffset(); index < type->methodCount(); ++index) {
            if (type->method(index).methodType() == QMetaMethod::Signal) {
                declared << QString::fromLatin1(type->method(index).name());
            }
        }
    }
    QSet<QString> named;
    const QRegularExpression signal("`(\\w+(Added|Canceled|Changed|Completed|Error|Failed|Finished|Out|Removed|"
                                    "Requested|Required|Started|Updated))\\b");
    for (auto matches = signal.globalMatch(section); matches.hasNext();) {
        named << matches.next().captured(1);
    }
    EXPECT_EQ(named - declared, QSet<QString>());
    EXPECT_EQ(declared - named, QSet<QString>());
}

TEST_F(EmbeddingGuideTest, RefreshKeepsTheLocalCopy)
{
    Write("here/plan.pdf", "plan");
    Save("plan.pdf");
    EXPECT_EQ(StatusOf("plan.pdf"), Status::InSync);
    Refresh();
    EXPECT_EQ(StatusOf("plan.pdf"), Status::InSync);
    EXPECT_EQ(editor->Document("plan.pdf")->GetPath().utf8string(), PathOf("here/plan.pdf").toStdString());
}

TEST_F(EmbeddingGuideTest, RecordOfAFilesListByItselfMakesTheListForgetTheLocalCopy)
{
    Write("here/plan.pdf", "plan");
    Save("plan.pdf");
    const auto held = editor->Document("plan.pdf");
    editor->documents->Update(std::make_shared<PDF::FileInfo>(*held->GetRedactableCloudInfo()));
    EXPECT_EQ(StatusOf("plan.pdf"), Status::OnlyInCloud);
}

TEST_F(EmbeddingGuideTest, RefreshBringsWhatIsNewAndTakesWhatIsGone)
{
    Write("cloud/bill.pdf", "bill");
    Write("cloud/plan.pdf", "plan");
    Refresh();
    EXPECT_EQ(editor->documents->FilesCount(), 2);
    QFile::remove(PathOf("cloud/bill.pdf"));
    Refresh();
    EXPECT_EQ(editor->documents->FilesCount(), 1);
    EXPECT_EQ(StatusOf("plan.pdf"), Status::OnlyInCloud);
}

TEST_F(EmbeddingGuideTest, StatusTellsOnWhichSideADocumentHasChanged)
{
    Write("cloud/plan.pdf", "plan");
    Refresh();
    Fetch("plan.pdf", "here");
    EXPECT_EQ(StatusOf("plan.pdf"), Status::InSync);

    Write("cloud/plan.pdf", "another plan");
    Refresh();
    EXPECT_EQ(StatusOf("plan.pdf"), Status::ChangedInCloud);
    Fetch("plan.pdf", "here");
    EXPECT_EQ(StatusOf("plan.pdf"), Status::InSync);

    Write("here/plan.pdf", "the plan of all plans");
    Refresh();
    EXPECT_EQ(StatusOf("plan.pdf"), Status::ChangedLocally);
}

TEST_F(EmbeddingGuideTest, ListComesBackAfterARestart)
{
    Write("here/plan.pdf", "plan");
    Save("plan.pdf");
    EXPECT_TRUE(store->records.empty());
    Open();
    EXPECT_EQ(store->records.size(), 1U);
    EXPECT_EQ(StatusOf("plan.pdf"), Status::InSync);
}

TEST_F(EmbeddingGuideTest, RemovedDocumentLeavesTheList)
{
    Write("cloud/plan.pdf", "plan");
    Refresh();
    Run(&Cloud::RemoveFileFinished, [&] { editor->cloud->RemoveFile(editor->Document("plan.pdf")); });
    EXPECT_EQ(editor->documents->FilesCount(), 0);
}

TEST_F(EmbeddingGuideTest, PreviewArrivesInTheHeldRecord)
{
    ASSERT_TRUE(QFile::copy(NORLIS_PROJECT "/samples/garden-year.pdf", PathOf("cloud/garden-year.pdf")));
    Run(&Cloud::RetrieveFilePreviewFinished, [&] { editor->cloud->RetrieveFilesList(); });
    EXPECT_FALSE(editor->documents->GetPreviewsSet(0).isEmpty());
}

TEST_F(EmbeddingGuideTest, ReasonOfAFailureIsToldBeforeItsSignal)
{
    QString said;
    QObject::connect(editor->cloud.get(), &Cloud::UploadingFileRequestError, editor.get(),
                     [&] { said = editor->reason; });
    Run(&Cloud::UploadingFileRequestError, [&] { editor->cloud->Upload(PathOf("here/missing.pdf")); });
    EXPECT_FALSE(said.isEmpty());
}

TEST_F(EmbeddingGuideTest, WhileADownloadRunsItsRecordHasThePathInTheStagingFolder)
{
    Write("cloud/plan.pdf", "plan");
    Refresh();
    editor->Fetch(IdOf("plan.pdf"), PathOf("here"));
    const auto& running = editor->fetching.at(IdOf("plan.pdf"));
    EXPECT_EQ(Host::ToText(running.record->GetPath()), running.staging->filePath("plan.pdf"));
    EXPECT_EQ(running.record->GetCloudStatus(), Status::OnlyInCloud);
    EXPECT_EQ(Host::ToText(editor->Document("plan.pdf")->GetPath()), "");

    ASSERT_TRUE(WaitUntil([&] { return editor->fetching.empty(); }));
    EXPECT_EQ(StatusOf("plan.pdf"), Status::InSync);
    EXPECT_EQ(FilesIn("here"), QStringList("plan.pdf"));
}

TEST_F(EmbeddingGuideTest, CancellingADownloadLeavesTheLocalCopy)
{
    Write("cloud/plan.pdf", "plan");
    Refresh();
    Fetch("plan.pdf", "here");
    Write("cloud/plan.pdf", "another plan");
    Refresh();

    editor->Fetch(IdOf("plan.pdf"), PathOf("here"));
    Run(&Cloud::DownloadingCanceled, [&] { editor->CancelFetching(IdOf("plan.pdf")); });
    EXPECT_EQ(Read("here/plan.pdf"), "plan");
    EXPECT_EQ(FilesIn("here"), QStringList("plan.pdf"));
    EXPECT_EQ(StatusOf("plan.pdf"), Status::ChangedInCloud);
}

TEST_F(EmbeddingGuideTest, CancellingADownloadWithARecordOfTheListDeletesTheLocalCopy)
{
    Write("cloud/plan.pdf", "plan");
    Refresh();
    Fetch("plan.pdf", "here");

    editor->Fetch(IdOf("plan.pdf"), PathOf("here"));
    editor->cloud->CancelDownloading(editor->documents->GetFileInfo(IdOf("plan.pdf")));
    EXPECT_EQ(FilesIn("here"), QStringList());
}

TEST_F(EmbeddingGuideTest, ListLearnsOfALocalSaveByAnUpdate)
{
    Write("here/plan.pdf", "plan");
    Save("plan.pdf");
    Write("here/plan.pdf", "a better plan");
    EXPECT_EQ(StatusOf("plan.pdf"), Status::InSync);
    editor->documents->Update(editor->Document("plan.pdf"));
    EXPECT_EQ(StatusOf("plan.pdf"), Status::ChangedLocally);
}

TEST_F(EmbeddingGuideTest, UploadIsRefusedIfTheDocumentHasChangedSinceUntilTheUserWantsIt)
{
    Write("here/plan.pdf", "plan");
    Save("plan.pdf");
    Write("cloud/plan.pdf", "somebody's plan");
    Write("here/plan.pdf", "a better plan");

    QSignalSpy removal(editor->cloud.get(), &Cloud::RemovingFileError);
    Run(&Cloud::UploadingFileRequestError, [&] { editor->Save(PathOf("here/plan.pdf")); });
    EXPECT_EQ(editor->reason, "The document in the cloud has changed since you last saw it");
    EXPECT_TRUE(removal.count() > 0 || removal.wait(30'000));
    EXPECT_EQ(StatusOf("plan.pdf"), Status::ChangedLocally);
    Refresh();
    EXPECT_EQ(StatusOf("plan.pdf"), Status::ChangedOnBothSides);
    EXPECT_EQ(Read("cloud/plan.pdf"), "somebody's plan");

    Fetch("plan.pdf", "there");
    EXPECT_EQ(Read("there/plan.pdf"), "somebody's plan");
    EXPECT_EQ(Host::ToText(editor->Document("plan.pdf")->GetPath()), PathOf("here/plan.pdf"));
    Run(&Cloud::UploadingFileRequestError, [&] { editor->Save(PathOf("here/plan.pdf")); });

    Run(&Cloud::UploadingFinished, [&] { editor->ReplaceInCloud(IdOf("plan.pdf")); });
    EXPECT_EQ(Read("cloud/plan.pdf"), "a better plan");
    EXPECT_EQ(StatusOf("plan.pdf"), Status::InSync);
}

TEST_F(EmbeddingGuideTest, TheVersionInTheCloudTakesThePlaceOfTheLocalOneWhichIsKept)
{
    Write("here/plan.pdf", "plan");
    Save("plan.pdf");
    Write("cloud/plan.pdf", "somebody's plan");
    Write("here/plan.pdf", "a better plan");
    Refresh();
    ASSERT_EQ(StatusOf("plan.pdf"), Status::ChangedOnBothSides);
    Run(&Cloud::DownloadingFinished, [&] { editor->UseCloudVersion(IdOf("plan.pdf")); });
    EXPECT_EQ(Read("here/plan.pdf"), "somebody's plan");
    EXPECT_EQ(Read("here/plan.pdf.mine"), "a better plan");
    EXPECT_EQ(StatusOf("plan.pdf"), Status::InSync);
}

TEST_F(EmbeddingGuideTest, ASavedDocumentGetsItsNewPicture)
{
    ASSERT_TRUE(QFile::copy(NORLIS_PROJECT "/samples/garden-year.pdf", PathOf("here/garden-year.pdf")));
    Save("garden-year.pdf");
    QSignalSpy drawn(editor->cloud.get(), &Cloud::RetrieveFilePreviewFinished);
    ASSERT_TRUE(drawn.wait(30'000));
    EXPECT_FALSE(editor->documents->GetPreviewsSet(0).isEmpty());
}

TEST_F(EmbeddingGuideTest, FileThatWasMovedOutOfTheStagingFolderReplacesOnlyTheVersionThatItIs)
{
    Write("cloud/plan.pdf", "plan");
    Refresh();
    Fetch("plan.pdf", "here");
    Write("cloud/plan.pdf", "somebody's plan");
    Refresh();
    Write("here/plan.pdf", "a better plan");
    Run(&Cloud::UploadingFileRequestError, [&] { editor->Save(PathOf("here/plan.pdf")); });
    EXPECT_EQ(Read("cloud/plan.pdf"), "somebody's plan");
}

TEST_F(EmbeddingGuideTest, FileThatIsThereIsNotReplacedByADownload)
{
    Write("cloud/plan.pdf", "plan");
    Write("here/plan.pdf", "something else");
    Refresh();
    Fetch("plan.pdf", "here");
    EXPECT_EQ(Read("here/plan.pdf"), "something else");
    EXPECT_EQ(StatusOf("plan.pdf"), Status::OnlyInCloud);
    EXPECT_EQ(FilesIn("here"), QStringList("plan.pdf"));
}

TEST_F(EmbeddingGuideTest, SamePathSentTwiceMakesTwoDocuments)
{
    Write("here/twice.pdf", "twice");
    QSignalSpy uploaded(editor->cloud.get(), &Cloud::UploadingFinished);
    editor->cloud->Upload(QStringList{PathOf("here/twice.pdf"), PathOf("here/twice.pdf")});
    ASSERT_TRUE(WaitUntil([&] { return uploaded.count() == 2; }));
    EXPECT_TRUE(editor->Document("twice.pdf"));
    EXPECT_TRUE(editor->Document("twice (2).pdf"));
}

TEST_F(EmbeddingGuideTest, RecordWithoutACloudPartIsSentAsANewDocumentAndOneWithoutAPathIsNot)
{
    Write("here/plan.pdf", "plan");
    const auto local = std::make_shared<PDF::FileInfo>(Host::ToPath(PathOf("here/plan.pdf")), "");
    Run(&Cloud::UploadingFinished, [&] { editor->cloud->Upload(local); });
    EXPECT_EQ(StatusOf("plan.pdf"), Status::InSync);
    EXPECT_EQ(local->GetId(), "");

    const auto cloudOnly = std::make_shared<PDF::FileInfo>(*editor->Document("plan.pdf")->GetRedactableCloudInfo());
    Run(&Cloud::UploadingFileRequestError, [&] { editor->cloud->Upload(cloudOnly); });
    EXPECT_EQ(Read("cloud/plan.pdf"), "plan");
}

TEST_F(EmbeddingGuideTest, DownloadIntoAFolderThatIsNotThereFails)
{
    Write("cloud/plan.pdf", "plan");
    Refresh();
    Run(&Cloud::DownloadingFileRequestError,
        [&] { editor->cloud->Download(editor->Document("plan.pdf"), PathOf("nowhere")); });
}

TEST_F(EmbeddingGuideTest, TwoListsThatAreRequestedTogetherBothArrive)
{
    QSignalSpy lists(editor->cloud.get(), &Cloud::RetrievingFilesListFinished);
    editor->cloud->RetrieveFilesList();
    editor->cloud->RetrieveFilesList();
    EXPECT_TRUE(WaitUntil([&] { return lists.count() == 2; }));
}

TEST_F(EmbeddingGuideTest, RemovalDuringADownloadEndsBoth)
{
    Write("cloud/plan.pdf", "plan");
    Refresh();
    QSignalSpy removed(editor->cloud.get(), &Cloud::RemoveFileFinished);
    editor->Fetch(IdOf("plan.pdf"), PathOf("here"));
    editor->cloud->RemoveFile(editor->Document("plan.pdf"));
    EXPECT_TRUE(WaitUntil([&] { return removed.count() == 1 && editor->fetching.empty(); }));
    EXPECT_EQ(editor->documents->FilesCount(), 0);
}

TEST_F(EmbeddingGuideTest, FailedSecondSignInKeepsTheFirst)
{
    ASSERT_TRUE(QDir(folder.path()).rename("cloud", "away"));
    Run(&Cloud::AuthorizationFailed, [&] { editor->SignIn("any"); });
    ASSERT_TRUE(QDir(folder.path()).rename("away", "cloud"));
    Refresh();
    EXPECT_EQ(editor->asked, 0);
}

TEST_F(EmbeddingGuideTest, UserIsAskedForThePasswordOnceWhateverIsRequested)
{
    EXPECT_TRUE(editor->refresh.isActive());
    editor->cloud->Logout();
    editor->cloud->RetrieveFilesList();
    editor->cloud->UserQuota();
    EXPECT_EQ(editor->asked, 1);
    EXPECT_FALSE(editor->refresh.isActive());

    Run(&Cloud::RetrievingFilesListFinished, [&] { editor->SignIn("any"); });
    EXPECT_TRUE(editor->refresh.isActive());
    editor->cloud->Logout();
    editor->cloud->UserQuota();
    EXPECT_EQ(editor->asked, 2);
}

} // namespace

} // namespace Norlis::Test
