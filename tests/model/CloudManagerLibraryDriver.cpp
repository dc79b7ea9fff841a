#include "CloudManagerDriver.h"

#include <tests/support/LogCapture.h>
#include <tests/support/SlotRunner.h>

#include <contracts/AbstractCloudManager.h>
#include <NorlisCloud/NorlisCloudManager.h>
#include <NorlisTestKit/FixedAccountSettings.h>
#include <NorlisTestKit/ScriptedProtocol.h>
#include <NorlisTestKit/SignalJournal.h>

#include <QMetaMethod>
#include <QTimer>

#include <algorithm>
#include <stdexcept>

namespace Norlis::Test {

namespace {

using namespace TestKit;
using PDF::Cloud::NorlisCloudManager;

/// The library, over scripted collaborators that write to the journal.
class LibraryDriver : public CloudManagerDriver {
public:
    explicit LibraryDriver(const QString& folder) : CloudManagerDriver(folder), log(journal)
    {
        protocol = std::make_shared<Protocol>(journal);
        for (const char* operation : {"auth", "logout", "retriveFileList", "uploadFile", "downloadFile", "deleteFile",
                                      "userQuota", "retrievePreview", "cancelOperation"}) {
            protocol->inside[operation] = [this](qint64) {
                const auto& call = protocol->calls.back();
                if (call.operation != "cancelOperation" && call.operation != "logout") {
                    journal->Write(FieldsText(call.fields) + FieldsText(call.extra) + call.localPath.toStdString());
                }
                Moment();
            };
        }
    }

    ~LibraryDriver() override
    {
        protocol->inside.clear();
    }

private:
    struct Protocol : ScriptedProtocol {
        explicit Protocol(const std::shared_ptr<Journal>& journal) : ScriptedProtocol(journal), journal(journal) {}

        bool loggedIn() override
        {
            journal->Write("-> loggedIn");
            return ScriptedProtocol::loggedIn();
        }

        std::shared_ptr<Journal> journal;
    };

    struct Hashes : PDF::IHashCalculator {
        explicit Hashes(LibraryDriver& driver) : driver(driver) {}

        std::string CalculateHash(const ioPath& file) override
        {
            return driver.HashOf(file);
        }

        LibraryDriver& driver;
    };

    struct FileSystem : PDF::IFileSystem {
        explicit FileSystem(LibraryDriver& driver) : driver(driver) {}

        bool Exists(const ioPath&) override
        {
            throw std::logic_error("the manager does not ask this");
        }

        ioPath NormalizePath(const ioPath& file) override
        {
            return driver.Normalized(file);
        }

        LibraryDriver& driver;
    };

    bool HasManager() const override
    {
        return manager != nullptr;
    }

    bool IsSyncInProgress() const override
    {
        return manager->IsSyncInProgressWithCloud();
    }

    void MakeManager() override
    {
        const auto settings = std::make_shared<FixedAccountSettings>();
        settings->autoRefresh = true;
        manager = std::make_unique<NorlisCloudManager>(protocol, std::make_shared<Hashes>(*this),
                                                       std::make_shared<FileSystem>(*this), settings);
        WriteSignals(*manager, journal);
        using M = NorlisCloudManager;
        WriteRecordsOf(&M::DownloadingStarted);
        WriteRecordsOf(&M::DownloadingProgressValueChanged);
        WriteRecordsOf(&M::DownloadingFinished);
        WriteRecordsOf(&M::DownloadingFileRequestError);
        WriteRecordsOf(&M::DownloadingCanceled);
        WriteRecordsOf(&M::UploadingFinished);
        WriteRecordsOf(&M::RemoveFileFinished);
        WriteRecordsOf(&M::RemovingFileError);
        WriteRecordsOf(&M::RetrieveFilePreviewStarted);
        WriteRecordsOf(&M::RetrieveFilePreviewFinished);
        WriteRecordsOf(&M::RetrieveFilePreviewError);
        WriteRecordsOf(&M::RetrieveFilePreviewCanceled);
        QObject::connect(manager.get(), &M::RetrievingFilesListFinished, manager.get(),
                         [this](const QList<File>& files) {
                             for (const File& file : files) {
                                 WriteRecord(file);
                             }
                         });
        const auto& meta = PDF::Cloud::AbstractCloudManager::staticMetaObject;
        for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
            runner.ConnectTo(*manager, meta.method(index));
        }
    }

    template <typename Record, typename... Args>
    void WriteRecordsOf(void (PDF::Cloud::AbstractCloudManager::*signal)(const std::shared_ptr<Record>&, Args...))
    {
        QObject::connect(manager.get(), signal, manager.get(), [this](const std::shared_ptr<Record>& record) {
            WriteRecord(std::const_pointer_cast<FileInfo>(record));
        });
    }

    void DeleteManager() override
    {
        manager.reset();
    }

    void Operate(const CloudAction& action) override
    {
        OperateOn(*manager, action);
    }

    void Tick() override
    {
        QMetaObject::invokeMethod(manager->findChild<QTimer*>(), "timeout", Qt::DirectConnection);
    }

    qint64 RequestCount() const override
    {
        qint64 count = 0;
        for (const auto& call : protocol->calls) {
            count = std::max(count, call.id);
        }
        return count;
    }

    void Answer(qint64 request, qint64 id, const ModelAnswer& answer) override
    {
        const std::string operation = CallOf(request).operation;
        if (operation == "uploadFile") {
            protocol->AnswerAs(request, id, answer.result, answer.sharing);
        } else if (operation == "retriveFileList") {
            protocol->AnswerAs(request, id, answer.result, answer.files);
        } else if (operation == "userQuota") {
            protocol->AnswerAs(request, id, answer.result, answer.quota);
        } else if (operation == "retrievePreview") {
            protocol->AnswerAs(request, id, answer.result, answer.picture);
        } else {
            protocol->AnswerAs(request, id, answer.result);
        }
    }

    void Progress(qint64 request, qint64 id, int value) override
    {
        const std::string operation = CallOf(request).operation;
        if (operation == "uploadFile" || operation == "downloadFile") {
            protocol->ProgressAs(request, id, value);
        }
    }

    const ScriptedProtocol::Call& CallOf(qint64 request) const
    {
        return *std::find_if(protocol->calls.begin(), protocol->calls.end(),
                             [&](const auto& call) { return call.id == request; });
    }

    void FlipSignedIn() override
    {
        protocol->signedIn = !protocol->signedIn;
    }

    void FlipRefusal(const std::string& operation) override
    {
        if (!protocol->refused.insert(operation).second) {
            protocol->refused.erase(operation);
        }
    }

    LogCapture log;
    SlotRunner runner{[this] { Moment(); }};
    std::shared_ptr<Protocol> protocol;
    std::unique_ptr<NorlisCloudManager> manager;
};

} // namespace

std::unique_ptr<CloudManagerDriver> CloudManagerDriverOfLibrary(const QString& folder)
{
    return std::make_unique<LibraryDriver>(folder);
}

} // namespace Norlis::Test
