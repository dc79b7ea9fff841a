#include "FilesListDriver.h"
#include "FilesListModel.h"

namespace Norlis::Test {

namespace {

/// The model.
class ListModelDriver : public FilesListDriver, public FilesListSurroundings {
public:
    using FilesListDriver::FilesListDriver;

private:
    bool HasList() const override
    {
        return list != nullptr;
    }

    void MakeList() override
    {
        lists.push_back(std::make_unique<FilesListModel>(*this));
        lists.back()->Load();
        list = lists.back().get();
    }

    void DeleteList() override
    {
        std::exchange(list, nullptr)->SaveAndDelete();
    }

    void Operate(const Action& action) override
    {
        if (action.kind == Action::CallWhatDoesNothing) {
            journal->Write("limit 0");
        } else {
            OperateOn(*list, action);
        }
    }

    std::map<std::string, FilesListDriver::Fields> ReadAll() override
    {
        return FilesListDriver::ReadAll();
    }

    void RemoveRecord(const std::string& id) override
    {
        FilesListDriver::RemoveRecord(id);
    }

    void SetValue(const std::string& id, const std::string& key, const std::string& value) override
    {
        FilesListDriver::SetValue(id, key, value);
    }

    bool Exists(const ioPath& path) override
    {
        return FilesListDriver::Exists(path);
    }

    ioPath Normalized(const ioPath& path) override
    {
        return FilesListDriver::Normalized(path);
    }

    std::string HashOf(const ioPath& path) override
    {
        return FilesListDriver::HashOf(path);
    }

    void Log(const std::string& record) override
    {
        journal->Write(record);
    }

    void Signal(const std::string& text) override
    {
        journal->Write(text);
        Moment();
    }

    std::vector<std::unique_ptr<FilesListModel>>
        lists; ///< deleted ones too, whose operations may still be on the stack
    FilesListModel* list = nullptr;
};

} // namespace

std::unique_ptr<FilesListDriver> FilesListDriverOfModel(const QString& folder)
{
    return std::make_unique<ListModelDriver>(folder);
}

} // namespace Norlis::Test
