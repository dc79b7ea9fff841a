#include "FilesListStage.h"

#include <QDir>

#include <stdexcept>
#include <utility>

namespace Norlis::Test {

FilesListStage::FilesListStage(const QString& folder) : folder(folder.toStdString())
{
    existing = {this->folder + "/a.pdf"};
    store["a"] = {{"file_path", this->folder + "/a.pdf"}, {"preview_path", "/1;/2;/3;"}};
    store["b"] = {{"file_path", this->folder + "/a.pdf"}, {"preview_path", "/1;/2;"}, {"cloud_size", "12"}};
    for (int number = 0; number < 8; ++number) {
        records.push_back(MakeRecord(number, 0));
    }
}

void FilesListStage::Begin()
{
    MakeList();
}

void FilesListStage::Finish()
{
    Act({Deed::DeleteList});
    for (const auto& [id, fields] : store) {
        for (const auto& [key, value] : fields) {
            journal->Write("stored of \"" + id + "\": " + key + " = " + value);
        }
    }
    for (const char* field : {"cloud_size", "is_private", "lifetime_in_sec"}) {
        for (auto& record : store) {
            record.second.erase(field); // of which some are malformed
        }
    }
    Act({Deed::MakeList});
    for (int index = 0; index < 12; ++index) {
        Act({Deed::AskByIndex, index + 2});
    }
    Act({Deed::DeleteList});
}

Trace FilesListStage::State()
{
    Trace trace;
    for (const auto& [record, cloud] : made) {
        trace.push_back("record: " + TextOf(record));
    }
    return trace;
}

std::map<std::string, FilesListStage::Fields> FilesListStage::ReadAll()
{
    journal->Write("-> ReadAll");
    ThrowIf(storeThrows, "store");
    return store;
}

void FilesListStage::RemoveRecord(const std::string& id)
{
    journal->Write("-> RemoveRecord " + id);
    ThrowIf(storeThrows, "store");
    store.erase(id);
}

void FilesListStage::SetValue(const std::string& id, const std::string& key, const std::string& value)
{
    journal->Write("-> SetValue " + id + ' ' + key + ' ' + value);
    store[id][key] = value;
}

bool FilesListStage::Exists(const ioPath& path)
{
    journal->Write("-> Exists " + path.utf8string());
    return existing.count(path.utf8string()) != 0;
}

ioPath FilesListStage::Normalized(const ioPath& path)
{
    journal->Write("-> NormalizePath " + path.utf8string());
    ThrowIf(normalizingThrows, "file system");
    return QDir::cleanPath(QString::fromStdString(path.utf8string())).toStdString();
}

std::string FilesListStage::HashOf(const ioPath& path)
{
    journal->Write("-> CalculateHash " + path.utf8string());
    ThrowIf(hashingThrows, "hash calculator");
    return existing.count(path.utf8string()) == 0 ? "" : "hash " + std::to_string(content);
}

void FilesListStage::Do(const Deed& deed)
{
    const File record = records[std::size_t(deed.subject) % records.size()];
    switch (deed.kind) {
    case Deed::ReplaceRecord:
        records[std::size_t(deed.subject) % records.size()] = MakeRecord(deed.subject, deed.detail);
        newer = nullptr;
        return;
    case Deed::SetPath:
        return record ? record->SetPath(Path(deed.detail), "set hash", "set sync hash") : void();
    case Deed::SetPreviews:
        return record ? record->SetPreviewsSet(Previews(deed.detail)) : void();
    case Deed::SetCloudPreviews:
        return record && record->GetRedactableCloudInfo()
                   ? record->GetRedactableCloudInfo()->SetPreviewsSet(Previews(deed.detail))
                   : void();
    case Deed::SetSyncing:
        return record ? record->SetIsSyncingInProgress(!record->IsSyncingInProgress()) : void();
    case Deed::TakeCloudPart:
        return record ? record->GetRedactableCloudInfo().reset() : void();
    case Deed::StoreField:
        store[IdOf(deed.subject)][StoredField(deed.detail).first] = InFolder(StoredField(deed.detail).second);
        return;
    case Deed::StoreNumbers:
        return StoreNumbers(store[IdOf(deed.subject)], deed.detail);
    case Deed::DropField:
        store[IdOf(deed.subject)].erase(StoredField(deed.detail).first);
        return;
    case Deed::LetStoreThrow:
        storeThrows = true;
        return;
    case Deed::LetHashingThrow:
        hashingThrows = true;
        return;
    case Deed::LetNormalizingThrow:
        normalizingThrows = true;
        return;
    case Deed::ContentChanges:
        ++content;
        return;
    case Deed::FileAppears:
        existing.insert(Path(deed.subject).utf8string());
        return;
    case Deed::FileVanishes:
        existing.erase(Path(deed.subject).utf8string());
        return;
    case Deed::DeleteList:
        return HasList() ? Delete() : void();
    case Deed::MakeList:
        return HasList() ? void() : MakeList();
    default:
        return HasList() ? Operate(deed) : void();
    }
}

void FilesListStage::StoreNumbers(Fields& fields, int combination)
{
    const std::vector<std::string> values = {"12", "", "99999999999"};
    for (const char* key : {"cloud_size", "is_private", "lifetime_in_sec"}) {
        fields[key] = values[std::size_t(combination) % values.size()];
        combination /= 3;
    }
}

void FilesListStage::Delete()
{
    storeThrows = false;
    for (const auto& [record, cloud] : made) {
        if (!record->GetRedactableCloudInfo()) {
            record->GetRedactableCloudInfo() = cloud;
        }
    }
    DeleteList();
}

std::string FilesListStage::InFolder(std::string text) const
{
    const std::string placeholder = "FOLDER";
    const auto position = text.find(placeholder);
    return position == std::string::npos ? text : text.replace(position, placeholder.size(), folder);
}

void FilesListStage::ThrowIf(bool& flag, const char* who)
{
    if (std::exchange(flag, false)) {
        throw std::runtime_error(who);
    }
}

std::string FilesListStage::IdOf(int number)
{
    static const std::vector<std::string> ids = {"a", "b", "b", "\xd0\xb4", "", "A", "c;d", "z"};
    return ids.at(std::size_t(number));
}

ioPath FilesListStage::Path(int number) const
{
    static const std::vector<std::string> names = {"/a.pdf", "//a.pdf", "/b \xc3\xbc.pdf", "/missing.pdf"};
    return number % 5 == 4 ? ioPath() : ioPath(folder + names.at(std::size_t(number % 5)));
}

std::map<PDF::FileInfo::PreviewSize, ioPath> FilesListStage::Previews(int number)
{
    std::map<FileInfo::PreviewSize, ioPath> previews;
    for (int size = 0; size < 3; ++size) {
        if ((number & (1 << size)) != 0) {
            previews[FileInfo::PreviewSize(size)] = "/preview \xc3\xbc " + std::to_string(number / 8) + ".png";
        }
    }
    return previews;
}

FilesListStage::File FilesListStage::MakeRecord(int number, int variant)
{
    if (number == 7) {
        return nullptr;
    }
    const std::string id = IdOf(number);
    const FileInfo::CloudInfo cloud(
        id, variant % 3 == 0 ? "name \xc3\xbc.pdf" : "", variant % 2 == 0 ? 1000 : 5'368'709'120, variant % 4 == 0,
        QUrl(variant % 5 == 0 ? "https://cloud.example/a%20b" : ""),
        QDateTime({2024, 2, 1 + variant % 20}, {1, 2, 3, 4}, Qt::UTC),
        QDateTime({2025, 2, 1 + variant % 20}, {1, 2, 3}), variant - 5, variant % 3 == 0 ? "hash 0" : "");
    made.emplace_back(std::make_shared<FileInfo>(cloud), cloud);
    made.back().first->SetPreviewsSet(Previews(variant));
    return made.back().first;
}

} // namespace Norlis::Test
