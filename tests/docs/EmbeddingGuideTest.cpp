// What docs/embedding.md shows, as an editor would have it, over a folder as the cloud.

#include <host/store/LocalFileSystem.h>
#include <host/store/Md5HashCalculator.h>
#include <NorlisCloud/NorlisCloudFilesManager.h>
#include <NorlisCloud/NorlisCloudManager.h>
#include <NorlisCloud/NorlisCloudProtocolProxy.h>
#include <NorlisTestKit/FixedAccountSettings.h>
#include <NorlisTestKit/RecordingStore.h>

#include <QDir>
#include <QFile>
#include <QMetaMethod>
#include <QRegularExpression>
#include <QSet>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Norlis::Test {

namespace {

using Cloud = PDF::Cloud::NorlisCloudManager;
using Documents = PDF::Cloud::NorlisCloudFilesManager;
using Settings = TestKit::FixedAccountSettings;
using Status = PDF::FileInfo::CloudStatus;

class Editor : public QObject {
public:
    Editor(const std::shared_ptr<PDF::Cloud::ICloudInfoStorage>& store, const QUrl& service);

    std::shared_ptr<PDF::FileInfo> Document(const QString& name) const;

    std::shared_ptr<PDF::IHashCalculator> hashes = std::make_shared<Host::Md5HashCalculator>();
    QString reason;

    // Destroyed from the last to the first.
    std::unique_ptr<Documents> documents;
    std::unique_ptr<Cloud> cloud;

private:
    void MergeFilesList(const QList<std::shared_ptr<PDF::FileInfo>>& files);
    void TakeUploaded(const std::shared_ptr<PDF::FileInfo>& record);
    void TakeDownloaded(const std::shared_ptr<const PDF::FileInfo>& record);
    void TakePreview(const std::shared_ptr<PDF::FileInfo>& record, PDF::FileInfo::PreviewSize size);
    void Replace(const std::shared_ptr<PDF::FileInfo>& record);
};

Editor::Editor(const std::shared_ptr<PDF::Cloud::ICloudInfoStorage>& store, const QUrl& service)
{
    const auto fileSystem = std::make_shared<Host::LocalFileSystem>();
    documents = std::make_unique<Documents>(store, fileSystem, hashes);

    Social::OAuth2::AuthInfo authInfo;
    authInfo.serviceUrl = service;
    authInfo.onFailure = [this](const auto& failure) { reason = failure.reason; };
    const auto protocol = std::make_shared<PDF::Cloud::NorlisCloudProtocolProxy>(authInfo, "editor");
    cloud = std::make_unique<Cloud>(protocol, hashes, fileSystem, std::make_shared<Settings>());

    connect(cloud.get(), &Cloud::RetrievingFilesListFinished, this, &Editor::MergeFilesList);
    connect(cloud.get(), &Cloud::UploadingFinished, this, &Editor::TakeUploaded);
    connect(cloud.get(), &Cloud::DownloadingFinished, this, &Editor::TakeDownloaded);
    connect(cloud.get(), &Cloud::RetrieveFilePreviewFinished, this, &Editor::TakePreview);
    connect(cloud.get(), &Cloud::RemoveFileFinished, documents.get(), &Documents::Remove);
}

void Editor::MergeFilesList(const QList<std::shared_ptr<PDF::FileInfo>>& files)
{
    QStringList gone;
    for (int row = 0; row < documents->FilesCount(); ++row) {
        gone << documents->GetDocumentId(row);
    }
    for (const auto& record : files) {
        const auto id = QString::fromStdString(record->GetId());
        gone.removeOne(id);
        if (const auto held = documents->GetFileInfo(id)) {
            record->SetPath(held->GetPath(), held->GetMd5Hash(), held->GetCloudHashBeforeChange());
            documents->Update(record);
        } else {
            documents->Add(record);
        }
    }
    for (const QString& id : qAsConst(gone)) {
        documents->Remove(documents->GetFileInfo(id));
    }
}

void Editor::Replace(const std::shared_ptr<PDF::FileInfo>& record)
{
    documents->Remove(record);
    documents->Add(record);
}

void Editor::TakeUploaded(const std::shared_ptr<PDF::FileInfo>& record)
{
    record->SetPath(record->GetPath(), record->GetMd5Hash(), record->GetMd5Hash());
    Replace(record);
}

void Editor::TakeDownloaded(const std::shared_ptr<const PDF::FileInfo>& record)
{
    PDF::FileInfo downloaded(*record);
    const auto held = documents->GetFileInfo(QString::fromStdString(downloaded.GetId()));
    if (held) { // or it was removed meanwhile
        const auto hash = hashes->CalculateHash(downloaded.GetPath());
        held->SetPath(downloaded.GetPath(), hash, hash);
        Replace(held);
    }
}

void Editor::TakePreview(const std::shared_ptr<PDF::FileInfo>& record, PDF::FileInfo::PreviewSize size)
{
    const auto held = documents->GetFileInfo(QString::fromStdString(record->GetId()));
    if (held) {
        auto previews = record->GetRedactableCloudInfo()->GetPreviewsSet();
        held->GetRedactableCloudInfo()->SetPreviewPathBySize(previews[size], size);
        documents->Update(held);
    }
}

std::shared_ptr<PDF::FileInfo> Editor::Document(const QString& name) const
{
    for (int row = 0; row < documents->FilesCount(); ++row) {
        if (documents->GetDocumentName(row) == name) {
            return documents->GetFileInfo(documents->GetDocumentId(row));
        }
    }
    return nullptr;
}

class EmbeddingGuideTest : public testing::Test {
protected:
    EmbeddingGuideTest()
    {
        for (const char* name : {"cloud", "here", "elsewhere"}) {
            QDir(folder.path()).mkdir(name);
        }
        Open();
    }

    void Open()
    {
        editor.reset();
        editor = std::make_unique<Editor>(store, QUrl::fromLocalFile(PathOf("cloud")));
        Run(&Cloud::AuthorizationCompleted, [&] { editor->cloud->Authorization("token"); });
    }

    template <typename Signal, typename Action>
    void Run(Signal signal, const Action& action)
    {
        QSignalSpy ended(editor->cloud.get(), signal);
        action();
        ASSERT_TRUE(ended.count() > 0 || ended.wait(30'000)) << editor->reason.toStdString();
    }

    void Upload(const QString& name)
    {
        Run(&Cloud::UploadingFinished, [&] { editor->cloud->Upload(PathOf("here/" + name)); });
    }

    void Download(const QString& name, const QString& to)
    {
        Run(&Cloud::DownloadingFinished, [&] { editor->cloud->Download(editor->Document(name), PathOf(to)); });
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
    Upload("plan.pdf");
    EXPECT_EQ(StatusOf("plan.pdf"), Status::InSync);
    Refresh();
    EXPECT_EQ(StatusOf("plan.pdf"), Status::InSync);
    EXPECT_EQ(editor->Document("plan.pdf")->GetPath().utf8string(), PathOf("here/plan.pdf").toStdString());
}

TEST_F(EmbeddingGuideTest, RecordOfAFilesListByItselfMakesTheListForgetTheLocalCopy)
{
    Write("here/plan.pdf", "plan");
    Upload("plan.pdf");
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
    Download("plan.pdf", "here");
    EXPECT_EQ(StatusOf("plan.pdf"), Status::InSync);

    Write("cloud/plan.pdf", "another plan");
    Refresh();
    EXPECT_EQ(StatusOf("plan.pdf"), Status::ChangedInCloud);
    Download("plan.pdf", "here");
    EXPECT_EQ(StatusOf("plan.pdf"), Status::InSync);

    Write("here/plan.pdf", "the plan of all plans");
    Refresh();
    EXPECT_EQ(StatusOf("plan.pdf"), Status::ChangedLocally);
}

TEST_F(EmbeddingGuideTest, ListComesBackAfterARestart)
{
    Write("here/plan.pdf", "plan");
    Upload("plan.pdf");
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

} // namespace

} // namespace Norlis::Test
