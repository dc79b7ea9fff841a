#include "FilesListDriver.h"

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
class ListLibraryDriver : public FilesListDriver {
public:
    explicit ListLibraryDriver(const QString& folder) : FilesListDriver(folder), log(journal) {}

private:
    struct Store : PDF::Cloud::ICloudInfoStorage {
        explicit Store(ListLibraryDriver& driver) : driver(driver) {}

        void RemoveRecord(const std::string& id) override
        {
            driver.FilesListDriver::RemoveRecord(id);
        }

        void SetValue(const std::string& id, const std::string& key, const std::string& value) override
        {
            driver.FilesListDriver::SetValue(id, key, value);
        }

        std::map<std::string, Fields> ReadAll() override
        {
            return driver.FilesListDriver::ReadAll();
        }

        ListLibraryDriver& driver;
    };

    struct FileSystem : PDF::IFileSystem {
        explicit FileSystem(ListLibraryDriver& driver) : driver(driver) {}

        bool Exists(const ioPath& path) override
        {
            return driver.FilesListDriver::Exists(path);
        }

        ioPath NormalizePath(const ioPath& path) override
        {
            return driver.Normalized(path);
        }

        ListLibraryDriver& driver;
    };

    struct Hashes : PDF::IHashCalculator {
        explicit Hashes(ListLibraryDriver& driver) : driver(driver) {}

        std::string CalculateHash(const ioPath& path) override
        {
            return driver.HashOf(path);
        }

        ListLibraryDriver& driver;
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

    void Operate(const Action& action) override
    {
        if (action.kind == Action::CallWhatDoesNothing) {
            list->Clear();
            list->Rename({"a", "b"}, "c");
            list->SetImageGetCallback([this](const QString&) {
                journal->Write("an image was asked for");
                return QImage();
            });
            journal->Write("limit " + std::to_string(list->Limit()));
        } else {
            OperateOn(*list, action);
        }
    }

    LogCapture log;
    SlotRunner runner{[this] { Moment(); }};
    std::unique_ptr<NorlisCloudFilesManager> list;
};

} // namespace

std::unique_ptr<FilesListDriver> FilesListDriverOfLibrary(const QString& folder)
{
    return std::make_unique<ListLibraryDriver>(folder);
}

} // namespace Norlis::Test
