#include "FilesListDriver.h"

#include <QDir>

#include <stdexcept>
#include <utility>

namespace Norlis::Test {

FilesListDriver::FilesListDriver(const QString& folder) : folder(folder.toStdString())
{
    existing = {this->folder + "/a.pdf"};
    store["a"] = {{"file_path", this->folder + "/a.pdf"}, {"preview_path", "/1;/2;/3;"}};
    store["b"] = {{"file_path", this->folder + "/a.pdf"}, {"preview_path", "/1;/2;"}, {"cloud_size", "12"}};
    for (int number = 0; number < 8; ++number) {
        records.push_back(MakeRecord(number, 0));
    }
}

void FilesListDriver::Begin()
{
    MakeList();
}

void FilesListDriver::Finish()
{
    Act({Action::DeleteList});
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
    Act({Action::MakeList});
    for (int index = 0; index < 12; ++index) {
        Act({Action::AskByIndex, index + 2});
    }
    Act({Action::DeleteList});
}

Trace FilesListDriver::State()
{
    Trace trace;
    for (const auto& [record, cloud] : made) {
        trace.push_back("record: " + TextOf(record));
    }
    return trace;
}

std::map<std::string, FilesListDriver::Fields> FilesListDriver::ReadAll()
{
    journal->Write("-> ReadAll");
    ThrowIf(storeThrows, "store");
    return store;
}

void FilesListDriver::RemoveRecord(const std::string& id)
{
    journal->Write("-> RemoveRecord " + id);
    ThrowIf(storeThrows, "store");
    store.erase(id);
}

void FilesListDriver::SetValue(const std::string& id, const std::string& key, const std::string& value)
{
    journal->Write("-> SetValue " + id + ' ' + key + ' ' + value);
    store[id][key] = value;
}

bool FilesListDriver::Exists(const ioPath& path)
{
    journal->Write("-> Exists " + path.utf8string());
    return existing.count(path.utf8string()) != 0;
}

ioPath FilesListDriver::Normalized(const ioPath& path)
{
    journal->Write("-> NormalizePath " + path.utf8string());
    ThrowIf(normalizingThrows, "file system");
    return QDir::cleanPath(QString::fromStdString(path.utf8string())).toStdString();
}

std::string FilesListDriver::HashOf(const ioPath& path)
{
    journal->Write("-> CalculateHash " + path.utf8string());
    ThrowIf(hashingThrows, "hash calculator");
    return existing.count(path.utf8string()) == 0 ? "" : "hash " + std::to_string(content);
}

void FilesListDriver::Do(const Action& action)
{
    const File record = records[std::size_t(action.subject) % records.size()];
    switch (action.kind) {
    case Action::ReplaceRecord:
        records[std::size_t(action.subject) % records.size()] = MakeRecord(action.subject, action.detail);
        newer = nullptr;
        return;
    case Action::SetPath:
        return record ? record->SetPath(Path(action.detail), "set hash", "set sync hash") : void();
    case Action::SetPreviews:
        return record ? record->SetPreviewsSet(Previews(action.detail)) : void();
    case Action::SetCloudPreviews:
        return record && record->GetRedactableCloudInfo()
                   ? record->GetRedactableCloudInfo()->SetPreviewsSet(Previews(action.detail))
                   : void();
    case Action::SetSyncing:
        return record ? record->SetIsSyncingInProgress(!record->IsSyncingInProgress()) : void();
    case Action::TakeCloudPart:
        return record ? record->GetRedactableCloudInfo().reset() : void();
    case Action::StoreField:
        store[IdOf(action.subject)][StoredField(action.detail).first] = InFolder(StoredField(action.detail).second);
        return;
    case Action::StoreNumbers:
        return StoreNumbers(store[IdOf(action.subject)], action.detail);
    case Action::DropField:
        store[IdOf(action.subject)].erase(StoredField(action.detail).first);
        return;
    case Action::LetStoreThrow:
        storeThrows = true;
        return;
    case Action::LetHashingThrow:
        hashingThrows = true;
        return;
    case Action::LetNormalizingThrow:
        normalizingThrows = true;
        return;
    case Action::ContentChanges:
        ++content;
        return;
    case Action::FileAppears:
        existing.insert(Path(action.subject).utf8string());
        return;
    case Action::FileVanishes:
        existing.erase(Path(action.subject).utf8string());
        return;
    case Action::DeleteList:
        return HasList() ? Delete() : void();
    case Action::MakeList:
        return HasList() ? void() : MakeList();
    default:
        return HasList() ? Operate(action) : void();
    }
}

void FilesListDriver::StoreNumbers(Fields& fields, int combination)
{
    const std::vector<std::string> values = {"12", "", "99999999999"};
    for (const char* key : {"cloud_size", "is_private", "lifetime_in_sec"}) {
        fields[key] = values[std::size_t(combination) % values.size()];
        combination /= 3;
    }
}

void FilesListDriver::Delete()
{
    storeThrows = false;
    for (const auto& [record, cloud] : made) {
        if (!record->GetRedactableCloudInfo()) {
            record->GetRedactableCloudInfo() = cloud;
        }
    }
    DeleteList();
}

std::string FilesListDriver::InFolder(std::string text) const
{
    const std::string placeholder = "FOLDER";
    const auto position = text.find(placeholder);
    return position == std::string::npos ? text : text.replace(position, placeholder.size(), folder);
}

void FilesListDriver::ThrowIf(bool& flag, const char* who)
{
    if (std::exchange(flag, false)) {
        throw std::runtime_error(who);
    }
}

std::string FilesListDriver::IdOf(int number)
{
    static const std::vector<std::string> ids = {"a", "b", "b", "\xd0\xb4", "", "A", "c;d", "z"};
    return ids.at(std::size_t(number));
}

ioPath FilesListDriver::Path(int number) const
{
    static const std::vector<std::string> names = {"/a.pdf", "//a.pdf", "/b \xc3\xbc.pdf", "/missing.pdf"};
    return number % 5 == 4 ? ioPath() : ioPath(folder + names.at(std::size_t(number % 5)));
}

std::map<PDF::FileInfo::PreviewSize, ioPath> FilesListDriver::Previews(int number)
{
    std::map<FileInfo::PreviewSize, ioPath> previews;
    for (int size = 0; size < 3; ++size) {
        if ((number & (1 << size)) != 0) {
            previews[FileInfo::PreviewSize(size)] = "/preview \xc3\xbc " + std::to_string(number / 8) + ".png";
        }
    }
    return previews;
}

FilesListDriver::File FilesListDriver::MakeRecord(int number, int variant)
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
