#include "FilesListHistory.h"

#include "Histories.h"

#include <map>
#include <ostream>
#include <vector>

namespace Norlis::Test {

namespace {

using Kind = FilesListAction::Kind;

const char* NameOf(Kind kind)
{
    static const std::map<Kind, const char*> names = {
        {FilesListAction::Add, "Add record"},
        {FilesListAction::Remove, "Remove record"},
        {FilesListAction::Update, "Update with record"},
        {FilesListAction::AskByIndex, "the getters, of index"},
        {FilesListAction::AskByPath, "GetIdByPath of path"},
        {FilesListAction::AskById, "GetFileInfo of the id of record"},
        {FilesListAction::CallWhatDoesNothing, "Clear, Rename, Limit, SetImageGetCallback"},
        {FilesListAction::ReplaceRecord, "the caller's record is replaced"},
        {FilesListAction::SetPath, "a path is set in record"},
        {FilesListAction::SetPreviews, "previews are set in record"},
        {FilesListAction::SetCloudPreviews, "previews are set in the cloud part of record"},
        {FilesListAction::SetSyncing, "the syncing flag changes in record"},
        {FilesListAction::TakeCloudPart, "the cloud part is taken from record"},
        {FilesListAction::StoreField, "somebody stores a field of record"},
        {FilesListAction::StoreNumbers, "somebody stores numbers of record, right or malformed"},
        {FilesListAction::DropField, "somebody deletes a stored field of record"},
        {FilesListAction::LetStoreThrow, "the store's next call throws"},
        {FilesListAction::LetHashingThrow, "the next hashing throws"},
        {FilesListAction::LetNormalizingThrow, "the next normalizing throws"},
        {FilesListAction::ContentChanges, "all files have other content now"},
        {FilesListAction::FileAppears, "there is a file at path"},
        {FilesListAction::FileVanishes, "there is no file at path"},
        {FilesListAction::DeleteList, "the list is deleted"},
        {FilesListAction::MakeList, "a list is made"},
    };
    return names.at(kind);
}

} // namespace

rc::Gen<FilesListAction> AnyFilesListAction()
{
    const auto kind = rc::gen::weightedElement<Kind>({
        {20, FilesListAction::Add},
        {10, FilesListAction::Remove},
        {14, FilesListAction::Update},
        {8, FilesListAction::AskByIndex},
        {4, FilesListAction::AskByPath},
        {3, FilesListAction::AskById},
        {1, FilesListAction::CallWhatDoesNothing},
        {10, FilesListAction::ReplaceRecord},
        {6, FilesListAction::SetPath},
        {4, FilesListAction::SetPreviews},
        {6, FilesListAction::SetCloudPreviews},
        {3, FilesListAction::SetSyncing},
        {2, FilesListAction::TakeCloudPart},
        {16, FilesListAction::StoreField},
        {2, FilesListAction::StoreNumbers},
        {4, FilesListAction::DropField},
        {1, FilesListAction::LetStoreThrow},
        {1, FilesListAction::LetHashingThrow},
        {1, FilesListAction::LetNormalizingThrow},
        {2, FilesListAction::ContentChanges},
        {2, FilesListAction::FileAppears},
        {2, FilesListAction::FileVanishes},
        {6, FilesListAction::DeleteList},
        {9, FilesListAction::MakeList},
    });
    const auto anyDetail = rc::gen::resize(rc::kNominalSize, rc::gen::inRange(0, storedFieldCount));
    return rc::gen::build<FilesListAction>(rc::gen::set(&FilesListAction::kind, kind),
                                           rc::gen::set(&FilesListAction::subject, AnyBelow(8)),
                                           rc::gen::set(&FilesListAction::detail, anyDetail));
}

std::ostream& operator<<(std::ostream& stream, const FilesListAction& action)
{
    stream << NameOf(action.kind) << ' ' << action.subject << " (detail " << action.detail << ')';
    if (action.kind == FilesListAction::StoreField || action.kind == FilesListAction::DropField) {
        stream << ": " << StoredField(action.detail).first << " = \"" << StoredField(action.detail).second << '"';
    }
    return stream;
}

const std::pair<std::string, std::string>& StoredField(int number)
{
    static const std::vector<std::pair<std::string, std::string>> fields = {
        {"file_path", "FOLDER/a.pdf"},
        {"file_path", "FOLDER//a.pdf"},
        {"file_path", "FOLDER/b \xc3\xbc.pdf"},
        {"file_path", ""},
        {"local_file_hash", "stored hash"},
        {"file_hash", "cloud hash"},
        {"last_sync_file_hash", "synchronised hash"},
        {"file_name", "stored \xd0\xb4.pdf"},
        {"file_name", "bad \xff\xfe.pdf"},
        {"is_private", "1"},
        {"is_private", "-7x"},
        {"is_private", "99999999999"},
        {"is_private", "true"},
        {"download_url", "https://cloud.example/a b?c=%20d"},
        {"download_url", "not a url \xc3\xa4"},
        {"created_at", "Thu Feb 29 12:30:45 2024 GMT"},
        {"created_at", "2024-02-29T12:30:45"},
        {"modified_time", "Thu Feb 29 12:30:45 2024"},
        {"lifetime_in_sec", "3600"},
        {"lifetime_in_sec", "-1"},
        {"lifetime_in_sec", "0"},
        {"lifetime_in_sec", ""},
        {"lifetime_in_sec", "2147483648"},
        {"cloud_size", "123"},
        {"cloud_size", " \t+4294967295 bytes"},
        {"cloud_size", "4294967296"},
        {"cloud_size", "-1"},
        {"cloud_size", "-4294967296"},
        {"cloud_size", ""},
        {"cloud_size", "-"},
        {"cloud_size", "99999999999999999999999"},
        {"preview_path", "/one;/two \xc3\xbc;/three"},
        {"preview_path", "/one;/two;"},
        {"preview_path", "/one;/two;/three;"},
        {"unknown_key", "value"},
    };
    return fields.at(std::size_t(number) % fields.size());
}

} // namespace Norlis::Test
