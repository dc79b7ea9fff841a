#include "FilesListHistory.h"

#include "Histories.h"

#include <map>
#include <ostream>
#include <vector>

namespace Norlis::Test {

namespace {

using Kind = FilesListDeed::Kind;

const char* NameOf(Kind kind)
{
    static const std::map<Kind, const char*> names = {
        {FilesListDeed::Add, "Add record"},
        {FilesListDeed::Remove, "Remove record"},
        {FilesListDeed::Update, "Update with record"},
        {FilesListDeed::AskByIndex, "the getters, of index"},
        {FilesListDeed::AskByPath, "GetIdByPath of path"},
        {FilesListDeed::AskById, "GetFileInfo of the id of record"},
        {FilesListDeed::CallWhatDoesNothing, "Clear, Rename, Limit, SetImageGetCallback"},
        {FilesListDeed::ReplaceRecord, "the caller's record is replaced"},
        {FilesListDeed::SetPath, "a path is set in record"},
        {FilesListDeed::SetPreviews, "previews are set in record"},
        {FilesListDeed::SetCloudPreviews, "previews are set in the cloud part of record"},
        {FilesListDeed::SetSyncing, "the syncing flag changes in record"},
        {FilesListDeed::TakeCloudPart, "the cloud part is taken from record"},
        {FilesListDeed::StoreField, "somebody stores a field of record"},
        {FilesListDeed::StoreNumbers, "somebody stores numbers of record, right or malformed"},
        {FilesListDeed::DropField, "somebody deletes a stored field of record"},
        {FilesListDeed::LetStoreThrow, "the store's next call throws"},
        {FilesListDeed::LetHashingThrow, "the next hashing throws"},
        {FilesListDeed::LetNormalizingThrow, "the next normalizing throws"},
        {FilesListDeed::ContentChanges, "all files have other content now"},
        {FilesListDeed::FileAppears, "there is a file at path"},
        {FilesListDeed::FileVanishes, "there is no file at path"},
        {FilesListDeed::DeleteList, "the list is deleted"},
        {FilesListDeed::MakeList, "a list is made"},
    };
    return names.at(kind);
}

} // namespace

rc::Gen<FilesListDeed> AnyFilesListDeed()
{
    const auto kind = rc::gen::weightedElement<Kind>({
        {20, FilesListDeed::Add},
        {10, FilesListDeed::Remove},
        {14, FilesListDeed::Update},
        {8, FilesListDeed::AskByIndex},
        {4, FilesListDeed::AskByPath},
        {3, FilesListDeed::AskById},
        {1, FilesListDeed::CallWhatDoesNothing},
        {10, FilesListDeed::ReplaceRecord},
        {6, FilesListDeed::SetPath},
        {4, FilesListDeed::SetPreviews},
        {6, FilesListDeed::SetCloudPreviews},
        {3, FilesListDeed::SetSyncing},
        {2, FilesListDeed::TakeCloudPart},
        {16, FilesListDeed::StoreField},
        {2, FilesListDeed::StoreNumbers},
        {4, FilesListDeed::DropField},
        {1, FilesListDeed::LetStoreThrow},
        {1, FilesListDeed::LetHashingThrow},
        {1, FilesListDeed::LetNormalizingThrow},
        {2, FilesListDeed::ContentChanges},
        {2, FilesListDeed::FileAppears},
        {2, FilesListDeed::FileVanishes},
        {6, FilesListDeed::DeleteList},
        {9, FilesListDeed::MakeList},
    });
    const auto anyDetail = rc::gen::resize(rc::kNominalSize, rc::gen::inRange(0, storedFieldCount));
    return rc::gen::build<FilesListDeed>(rc::gen::set(&FilesListDeed::kind, kind),
                                         rc::gen::set(&FilesListDeed::subject, AnyBelow(8)),
                                         rc::gen::set(&FilesListDeed::detail, anyDetail));
}

std::ostream& operator<<(std::ostream& stream, const FilesListDeed& deed)
{
    stream << NameOf(deed.kind) << ' ' << deed.subject << " (detail " << deed.detail << ')';
    if (deed.kind == FilesListDeed::StoreField || deed.kind == FilesListDeed::DropField) {
        stream << ": " << StoredField(deed.detail).first << " = \"" << StoredField(deed.detail).second << '"';
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
