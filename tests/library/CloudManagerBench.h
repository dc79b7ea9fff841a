#pragma once

#include <tests/support/LogCapture.h>

#include <NorlisCloud/NorlisCloudManager.h>
#include <NorlisTestKit/CountingHashCalculator.h>
#include <NorlisTestKit/FakeFileSystem.h>
#include <NorlisTestKit/FixedAccountSettings.h>
#include <NorlisTestKit/Journal.h>
#include <NorlisTestKit/Records.h>
#include <NorlisTestKit/ScriptedProtocol.h>
#include <NorlisTestKit/SignalJournal.h>

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Norlis::Test {

using namespace TestKit;

using PDF::FileInfo;
using PDF::Cloud::NorlisCloudManager;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// A cloud manager over scripted collaborators. Signals, protocol calls and log records stand in one journal.
class CloudManagerBench {
public:
    CloudManagerBench();

    /// Replaces the manager by one of another class.
    template <typename Manager>
    Manager& Use()
    {
        auto made = std::make_unique<Manager>(protocol, hashes, fileSystem, settings);
        auto& reference = *made;
        manager = std::move(made);
        WriteSignals(reference, journal);
        return reference;
    }

    /// The journal's lines since the last call.
    std::vector<std::string> Events()
    {
        return journal->Take();
    }

    /// Drops the journal's lines.
    void Forget()
    {
        journal->Take();
    }

    /// Writes a file into the bench's folder and gives its path.
    QString Write(const QString& name, const QByteArray& content = "content") const;

    // Each starts a request with the bench's own arguments and gives its id.
    qint64 StartAuthorization();
    qint64 StartFilesList();
    qint64 StartUpload();
    qint64 StartDownload();
    qint64 StartRemoval();
    qint64 StartPreview();
    qint64 StartQuota();

    QTemporaryDir folder;
    std::shared_ptr<Journal> journal = std::make_shared<Journal>();
    LogCapture log{journal};
    std::shared_ptr<ScriptedProtocol> protocol = std::make_shared<ScriptedProtocol>(journal);
    std::shared_ptr<CountingHashCalculator> hashes = std::make_shared<CountingHashCalculator>();
    std::shared_ptr<FakeFileSystem> fileSystem = std::make_shared<FakeFileSystem>();
    std::shared_ptr<FixedAccountSettings> settings = std::make_shared<FixedAccountSettings>();
    std::unique_ptr<NorlisCloudManager> manager;

    // Arguments of the operations. They are handed over by reference, and a slot may change them meanwhile.
    QString token = QStringLiteral("token");
    QString path = QStringLiteral("/home/me/report.pdf");
    QList<QString> paths = {QStringLiteral("/home/me/1.pdf"), QStringLiteral("/home/me/2.pdf")};
    QString directory = QStringLiteral("/home/me/cloud");
    std::shared_ptr<FileInfo> file = RecordOf("doc");
    QList<std::shared_ptr<FileInfo>> files = {RecordOf("doc1"), RecordOf("doc2")};
};

class CloudManagerTest : public testing::Test, public CloudManagerBench {
protected:
    /// Every log record names the manager's source file.
    void TearDown() override;
};

/// A result that no version of the contract knows.
inline constexpr auto foreignResult = static_cast<Social::RequestResult>(3);
inline constexpr auto negativeResult = static_cast<Social::RequestResult>(-1);

} // namespace Norlis::Test
