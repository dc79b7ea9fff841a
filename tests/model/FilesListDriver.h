#pragma once

#include "FilesListHistory.h"
#include "Histories.h"
#include "RecordText.h"

#include <QDateTime>
#include <QMap>
#include <QUrl>
#include <QVariant>

#include <set>

namespace Norlis::Test {

/// Plays histories of the file list, with a store, files and records of its own.
class FilesListDriver : public Driver<FilesListAction> {
public:
    using Action = FilesListAction;
    using FileInfo = PDF::FileInfo;
    using File = std::shared_ptr<FileInfo>;
    using Fields = std::map<std::string, std::string>;

    explicit FilesListDriver(const QString& folder);

protected:
    virtual bool HasList() const = 0;
    virtual void MakeList() = 0;
    virtual void DeleteList() = 0;
    virtual void Operate(const Action& action) = 0;

    void Begin() override;
    void Finish() override;
    Trace State() override;

    template <typename List>
    void OperateOn(List& list, const Action& action)
    {
        File& record = records[std::size_t(action.subject) % records.size()];
        switch (action.kind) {
        case Action::Add:
            return list.Add(record);
        case Action::Remove:
            return list.Remove(record);
        case Action::Update:
            newer = record;
            return list.Update(newer);
        case Action::AskByIndex:
            return AskByIndex(list, action.subject - 2);
        case Action::AskByPath:
            journal->Write("at the path: " + list.GetIdByPath(Path(action.subject)));
            return;
        case Action::AskById:
            return AskById(list, record ? QString::fromStdString(record->GetId()) : "unknown");
        default:
            return;
        }
    }

    std::map<std::string, Fields> ReadAll();
    void RemoveRecord(const std::string& id);
    void SetValue(const std::string& id, const std::string& key, const std::string& value);
    bool Exists(const ioPath& path);
    ioPath Normalized(const ioPath& path);
    std::string HashOf(const ioPath& path);

private:
    template <typename List>
    void AskByIndex(List& list, int index)
    {
        journal->Write("count " + std::to_string(list.FilesCount()));
        journal->Write("name " + list.GetDocumentName(index).toStdString());
        journal->Write("id " + list.GetDocumentId(index).toStdString());
        journal->Write("path " + list.GetDocumentPath(index).toStdString());
        const QDateTime modified = list.GetModifiedDateTime(index);
        journal->Write("modified " + modified.toString(Qt::ISODateWithMs).toStdString());
        journal->Write("state " + std::to_string(list.GetDocumentState(index)));
        journal->Write("size " + std::to_string(list.GetFileSize(index)));
        const auto previews = list.GetPreviewsSet(index);
        for (auto preview = previews.begin(); preview != previews.end(); ++preview) {
            journal->Write("preview " + preview.key().toStdString() + ' ' +
                           preview.value().toUrl().toString().toStdString());
        }
    }

    template <typename List>
    void AskById(List& list, const QString& id)
    {
        const File copy = list.GetFileInfo(id);
        journal->Write("of the id: " + TextOf(copy));
        if (copy) {
            copy->SetPath(ioPath(), "changed by the caller");
            copy->SetIsSyncingInProgress(!copy->IsSyncingInProgress());
        }
    }

    void Do(const Action& action) override;

    static void StoreNumbers(Fields& fields, int combination);

    /// A list that is deleted saves, and must be able to.
    void Delete();

    std::string InFolder(std::string text) const;

    static void ThrowIf(bool& flag, const char* who);

    /// Two records share an id; another one is empty.
    static std::string IdOf(int number);

    ioPath Path(int number) const;

    static std::map<FileInfo::PreviewSize, ioPath> Previews(int number);

    /// The last record is null.
    File MakeRecord(int number, int variant);

    const std::string folder;
    std::map<std::string, Fields> store;
    std::set<std::string> existing;
    int content = 0;
    bool storeThrows = false;
    bool hashingThrows = false;
    bool normalizingThrows = false;

    std::vector<File> records;
    std::shared_ptr<const FileInfo> newer; ///< handed over by reference
    std::vector<std::pair<File, FileInfo::CloudInfo>> made;
};

/// Of the library, and of its model.
std::unique_ptr<FilesListDriver> FilesListDriverOfLibrary(const QString& folder);
std::unique_ptr<FilesListDriver> FilesListDriverOfModel(const QString& folder);

} // namespace Norlis::Test
