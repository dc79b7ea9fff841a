#include "FilesListStage.h"

#include <tests/support/LogCapture.h>
#include <tests/support/SlotRunner.h>

#include <NorlisCloud/NorlisCloudFilesManager.h>
#include <NorlisTestKit/SignalJournal.h>

#include <QMetaMethod>

namespace Norlis::Test {

namespace {

using namespace TestKit;
using PDF::Cloud::NorlisCloudFilesManager;

/// The library.
class ListLibraryStage : public FilesListStage {
public:
    explicit ListLibraryStage(const QString& folder) : FilesListStage(folder), log(journal) {}

private:
    struct Store : PDF::Cloud::ICloudInfoStorage {
        explicit Store(ListLibraryStage& stage) : stage(stage) {}

        void RemoveRecord(const std::string& id) override
        {
            stage.FilesListStage::RemoveRecord(id);
        }

        void SetValue(const std::string& id, const std::string& key, const std::string& value) override
        {
            stage.FilesListStage::SetValue(id, key, value);
        }

        std::map<std::string, Fields> ReadAll() override
        {
            return stage.FilesListStage::ReadAll();
        }

        ListLibraryStage& stage;
    };

    struct FileSystem : PDF::IFileSystem {
        explicit FileSystem(ListLibraryStage& stage) : stage(stage) {}

        bool Exists(const ioPath& path) override
        {
            return stage.FilesListStage::Exists(path);
        }

        ioPath NormalizePath(const ioPath& path) override
        {
            return stage.Normalized(path);
        }

        ListLibraryStage& stage;
    };

    struct Hashes : PDF::IHashCalculator {
        explicit Hashes(ListLibraryStage& stage) : stage(stage) {}

        std::string CalculateHash(const ioPath& path) override
        {
            return stage.HashOf(path);
        }

        ListLibraryStage& stage;
    };

    bool HasList() const override
    {
        return list != nullptr;
    }

    void MakeList() override
    {
        list = std::make_unique<NorlisCloudFilesManager>(
            std::make_shared<Store>(*this), std::make_shared<FileSystem>(*this), std::make_shared<Hashes>(*this));
        WriteSignals(*list, journal);
        const auto& meta = PDF::AbstractFileManager::staticMetaObject;
        for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
            runner.ConnectTo(*list, meta.method(index));
        }
    }

    void DeleteList() override
    {
        list.reset();
    }

    void Operate(const Deed& deed) override
    {
        if (deed.kind == Deed::CallWhatDoesNothing) {
            list->Clear();
            list->Rename({"a", "b"}, "c");
            list->SetImageGetCallback([this](const QString&) {
                journal->Write("an image was asked for");
                return QImage();
            });
            journal->Write("limit " + std::to_string(list->Limit()));
        } else {
            OperateOn(*list, deed);
        }
    }

    LogCapture log;
    SlotRunner runner{[this] { Moment(); }};
    std::unique_ptr<NorlisCloudFilesManager> list;
};

} // namespace

std::unique_ptr<FilesListStage> FilesListStageOfLibrary(const QString& folder)
{
    return std::make_unique<ListLibraryStage>(folder);
}

} // namespace Norlis::Test
