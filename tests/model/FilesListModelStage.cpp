#include "FilesListModel.h"
#include "FilesListStage.h"

namespace Norlis::Test {

namespace {

/// The model.
class ListModelStage : public FilesListStage, public FilesListSurroundings {
public:
    using FilesListStage::FilesListStage;

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

    void Operate(const Deed& deed) override
    {
        if (deed.kind == Deed::CallWhatDoesNothing) {
            journal->Write("limit 0");
        } else {
            OperateOn(*list, deed);
        }
    }

    std::map<std::string, FilesListStage::Fields> ReadAll() override
    {
        return FilesListStage::ReadAll();
    }

    void RemoveRecord(const std::string& id) override
    {
        FilesListStage::RemoveRecord(id);
    }

    void SetValue(const std::string& id, const std::string& key, const std::string& value) override
    {
        FilesListStage::SetValue(id, key, value);
    }

    bool Exists(const ioPath& path) override
    {
        return FilesListStage::Exists(path);
    }

    ioPath Normalized(const ioPath& path) override
    {
        return FilesListStage::Normalized(path);
    }

    std::string HashOf(const ioPath& path) override
    {
        return FilesListStage::HashOf(path);
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

std::unique_ptr<FilesListStage> FilesListStageOfModel(const QString& folder)
{
    return std::make_unique<ListModelStage>(folder);
}

} // namespace Norlis::Test
