#include "CloudManagerBench.h"
#include "FilesManagerBench.h"

#include <QCoreApplication>
#include <QSignalSpy>

#include <stdexcept>
#include <utility>

namespace Norlis::Test {

namespace {

/// Runs an action inside loggedIn(), as a protocol does that runs an event loop there.
class LoopingProtocol : public ScriptedProtocol {
public:
    using ScriptedProtocol::ScriptedProtocol;
    std::function<void()> insideLoggedIn;

    bool loggedIn() override
    {
        const bool answer = ScriptedProtocol::loggedIn();
        if (insideLoggedIn) {
            insideLoggedIn();
        }
        return answer;
    }
};

/// Runs an action inside each calculation.
class LoopingCalculator : public CountingHashCalculator {
public:
    std::function<void()> inside;

    std::string CalculateHash(const ioPath& path) override
    {
        const auto hash = CountingHashCalculator::CalculateHash(path);
        if (inside) {
            inside();
        }
        return hash;
    }
};

/// Runs an action before a record is removed.
class LoopingStore : public RecordingStore {
public:
    std::function<void()> inside;

    void RemoveRecord(const std::string& fileId) override
    {
        if (const auto action = std::exchange(inside, nullptr)) {
            action();
        }
        RecordingStore::RemoveRecord(fileId);
    }
};

/// A collaborator runs an event loop, in which the cloud manager is deleted, and with it the last that holds the
/// collaborator. What that does to memory shows under the address sanitizer.
class CloudManagerLoopTest : public CloudManagerTest {
protected:
    CloudManagerLoopTest()
    {
        protocol = looping;
        hashes = calculator;
        Use<NorlisCloudManager>();
    }

    /// Drops the manager, and the bench's own hold of the collaborators that it works with.
    void Delete()
    {
        manager.reset();
        hashes.reset();
        calculator.reset();
        fileSystem.reset();
        path.clear();
        paths.clear();
        directory.clear();
        token.clear();
        file.reset();
        files.clear();
    }

    /// Deletes the manager inside the next calculation.
    void DeleteInsideTheCalculation()
    {
        calculator->inside = [this, running = std::weak_ptr<LoopingCalculator>(calculator)] {
            Delete();
            EXPECT_FALSE(running.expired()) << "destroyed while it runs";
        };
    }

    /// Deletes the manager inside the next normalisation.
    void DeleteInsideTheNormalization()
    {
        fileSystem->normalize = [this, running = std::weak_ptr<FakeFileSystem>(fileSystem)](const std::string& path) {
            const auto normalized = path;
            const auto held = running;
            Delete();
            EXPECT_FALSE(held.expired()) << "destroyed while it runs";
            return normalized;
        };
    }

    std::shared_ptr<LoopingProtocol> looping = std::make_shared<LoopingProtocol>(journal);
    std::shared_ptr<LoopingCalculator> calculator = std::make_shared<LoopingCalculator>();
};

TEST_F(CloudManagerLoopTest, ManagerDeletedInsideLoggedInDoesNothingMore)
{
    const std::vector<std::function<void()>> operations = {
        [&] { manager->Logout(); },
        [&] { manager->Upload(file); },
        [&] { manager->Upload(path); },
        [&] { manager->Upload(paths); },
        [&] { manager->Download(file, directory); },
        [&] { manager->Download(files, directory); },
        [&] { manager->RetrieveFilesList(); },
        [&] { manager->RemoveFile(file); },
        [&] { manager->CancelUploading(path); },
        [&] { manager->CancelDownloading(file); },
        [&] { manager->UserQuota(); },
        [&] {
            manager->RetrieveFilePreview(file, FileInfo::PreviewSize::Small, {40, 40});
        },
    };
    for (const bool signedIn : {true, false}) {
        for (const auto& operation : operations) {
            fileSystem = std::make_shared<FakeFileSystem>();
            hashes = std::make_shared<CountingHashCalculator>();
            file = RecordOf("doc");
            path = QStringLiteral("/home/me/report.pdf");
            Use<NorlisCloudManager>();
            looping->signedIn = signedIn;
            looping->insideLoggedIn = [this] { Delete(); };

            operation();

            looping->insideLoggedIn = nullptr;
            EXPECT_THAT(Events(), IsEmpty());
        }
    }
}

TEST_F(CloudManagerLoopTest, ManagerDeletedInTheMiddleOfAListOfTransfersStartsNoMore)
{
    int questions = 0;
    looping->insideLoggedIn = [&] {
        if (++questions == 3) {
            Delete();
        }
    };
    manager->Upload(paths);
    EXPECT_THAT(Events(), ElementsAre("UploadingStarted(/home/me/1.pdf)", "-> uploadFile 1", "-> cancelOperation 1"));
}

TEST_F(CloudManagerLoopTest, ManagerDeletedWhileAFileToSendIsHashedSendsNothing)
{
    const std::vector<std::function<void()>> uploads = {
        [&] { manager->Upload(path); },
        [&] { manager->Upload(paths); },
        [&] { manager->Upload(file); },
    };
    for (const auto& upload : uploads) {
        calculator = std::make_shared<LoopingCalculator>();
        hashes = calculator;
        fileSystem = std::make_shared<FakeFileSystem>();
        file = RecordOf("doc");
        paths = QStringList{"/1.pdf", "/2.pdf"};
        Use<NorlisCloudManager>();
        DeleteInsideTheCalculation();

        upload();

        EXPECT_THAT(Events(), IsEmpty());
    }
}

TEST_F(CloudManagerLoopTest, ManagerDeletedWhileTheTargetOfADownloadIsHashedCancelsTheDownload)
{
    DeleteInsideTheCalculation();
    manager->Download(file, directory);
    EXPECT_THAT(Events(), ElementsAre("DownloadingStarted(doc)", "-> downloadFile 1", "-> cancelOperation 1"));
}

TEST_F(CloudManagerLoopTest, ManagerDeletedWhileTheTargetOfADownloadIsNormalizedCancelsTheDownload)
{
    DeleteInsideTheNormalization();
    manager->Download(file, directory);
    EXPECT_THAT(Events(), ElementsAre("DownloadingStarted(doc)", "-> downloadFile 1", "-> cancelOperation 1"));
}

TEST_F(CloudManagerLoopTest, ManagerDeletedWhileAnUploadedFileIsHashedReportsNothing)
{
    for (const bool isInsideTheCalculation : {true, false}) {
        for (const auto result : {Social::Success, Social::Error, Social::Canceled, foreignResult}) {
            calculator = std::make_shared<LoopingCalculator>();
            hashes = calculator;
            fileSystem = std::make_shared<FakeFileSystem>();
            path = QStringLiteral("/home/me/report.pdf");
            Use<NorlisCloudManager>();
            const auto upload = StartUpload();
            isInsideTheCalculation ? DeleteInsideTheCalculation() : DeleteInsideTheNormalization();
            Forget();

            protocol->Answer(upload, result);

            EXPECT_THAT(Events(), IsEmpty());
        }
    }
}

TEST_F(CloudManagerLoopTest, AnswerThatArrivesWhileTheTargetOfADownloadIsHashedIsReportedAfterwards)
{
    calculator->inside = [this] { protocol->Answer(1, Social::Success); };
    QSignalSpy finished(manager.get(), &NorlisCloudManager::DownloadingFinished);

    manager->Download(file, directory);

    EXPECT_THAT(Events(), ElementsAre("DownloadingStarted(doc)", "-> downloadFile 1"));
    QCoreApplication::processEvents();
    EXPECT_THAT(Events(), ElementsAre("DownloadingFinished(doc)"));
    const auto copy = finished.value(0).value(0).value<std::shared_ptr<const FileInfo>>();
    EXPECT_EQ(std::const_pointer_cast<FileInfo>(copy)->GetPath(), file->GetPath());
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
}

TEST_F(CloudManagerLoopTest, AnswerThatArrivesWhileTheTargetOfADownloadIsHashedIsDroppedWhenItIsCancelledAfterwards)
{
    calculator->inside = [this] { protocol->Answer(1, Social::Success); };
    manager->Download(file, directory);
    manager->CancelDownloading(file);
    Forget();
    QCoreApplication::processEvents();
    EXPECT_THAT(Events(), IsEmpty());
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
}

TEST_F(CloudManagerLoopTest, AnswerThatArrivesWhileAHashIsCalculatedThatFailsIsDropped)
{
    calculator->inside = [this] {
        protocol->Answer(1, Social::Success);
        throw std::runtime_error("not readable");
    };
    EXPECT_THROW(manager->Download(file, directory), std::runtime_error);
    Forget();
    QCoreApplication::processEvents();
    protocol->Answer(1, Social::Success);
    EXPECT_THAT(Events(), IsEmpty());
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
}

/// The same for the file list.
class FilesListLoopTest : public FilesManagerTest {
protected:
    FilesListLoopTest()
    {
        hashes = calculator;
        store = looping;
        Open();
        Add({"a", "b"});
    }

    void Delete()
    {
        manager.reset();
        newer.reset();
        hashes.reset();
        calculator.reset();
        fileSystem.reset();
        journal->Take();
    }

    std::shared_ptr<const FileInfo> newer = RecordOf("a");
    std::shared_ptr<LoopingCalculator> calculator = std::make_shared<LoopingCalculator>();
    std::shared_ptr<LoopingStore> looping = std::make_shared<LoopingStore>();
};

TEST_F(FilesListLoopTest, ListDeletedWhileANewerRecordIsHashedReportsNothing)
{
    calculator->inside = [this, running = std::weak_ptr<LoopingCalculator>(calculator)] {
        Delete();
        EXPECT_FALSE(running.expired()) << "destroyed while it runs";
    };
    manager->Update(newer);
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(FilesListLoopTest, ListDeletedWhileANewerRecordsPathIsNormalizedReportsNothing)
{
    fileSystem->normalize = [this](const std::string& path) {
        const auto normalized = path;
        Delete();
        return normalized;
    };
    manager->Update(newer);
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(FilesListLoopTest, RecordTakenOutWhileItIsHashedHasNoIndex)
{
    calculator->inside = [this] {
        calculator->inside = nullptr;
        manager->Remove(RecordOf("a"));
        Events();
    };
    manager->Update(newer);
    EXPECT_THAT(Events(), ElementsAre("FileUpdated(\"a\")"));
}

TEST_F(FilesListLoopTest, ListDeletedWhileTheStoreRemovesARecordReportsNothing)
{
    looping->inside = [this] { Delete(); };
    manager->Remove(RecordOf("a"));
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(FilesListLoopTest, ListDeletedWhilePathsAreComparedFindsNothing)
{
    int calls = 0;
    fileSystem->normalize = [&, this](const std::string& path) {
        const auto normalized = path;
        if (++calls == 2) {
            Delete();
        }
        return normalized;
    };
    EXPECT_EQ(manager->GetIdByPath(ioPath("/a.pdf")), "");
}

} // namespace

} // namespace Norlis::Test
