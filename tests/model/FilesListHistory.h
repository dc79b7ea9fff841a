#pragma once

#include <rapidcheck.h>

#include <iosfwd>
#include <string>
#include <utility>

namespace Norlis::Test {

/// One thing that the editor, a slot or the world does to the file list.
struct FilesListAction {
    enum Kind {
        Add,
        Remove,
        Update,
        AskByIndex,
        AskByPath,
        AskById,
        CallWhatDoesNothing,
        ReplaceRecord,
        SetPath,
        SetPreviews,
        SetCloudPreviews,
        SetSyncing,
        TakeCloudPart,
        StoreField,
        StoreNumbers,
        DropField,
        LetStoreThrow,
        LetHashingThrow,
        LetNormalizingThrow,
        ContentChanges,
        FileAppears,
        FileVanishes,
        DeleteList,
        MakeList,
    };

    Kind kind = Add;
    int subject = 0; ///< which record, stored record or path
    int detail = 0;  ///< which path, field or previews
};

rc::Gen<FilesListAction> AnyFilesListAction();

std::ostream& operator<<(std::ostream& stream, const FilesListAction& action);

/// Keys and values of stored records, malformed ones among them.
const std::pair<std::string, std::string>& StoredField(int number);
inline constexpr int storedFieldCount = 35;

} // namespace Norlis::Test
