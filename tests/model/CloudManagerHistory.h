#pragma once

#include "CloudManagerModel.h"

#include <rapidcheck.h>

#include <iosfwd>
#include <vector>

namespace Norlis::Test {

/// One thing that the editor, a slot, the protocol or the world does.
struct CloudAction {
    enum Kind {
        Authorization,
        Logout,
        UploadPath,
        UploadRecord,
        UploadList,
        Download,
        DownloadList,
        RetrieveFilesList,
        RefreshTick,
        RemoveFile,
        CancelUploading,
        CancelDownloading,
        UserQuota,
        RetrieveFilePreview,
        Answer,
        AnswerAsAnother,
        Progress,
        ProgressAsAnother,
        FlipSignedIn,
        FlipRefusal,
        LetHashingThrow,
        LetNormalizingThrow,
        FileAppears,
        FileVanishes,
        ReplaceArguments,
        MarkAsSyncing,
        TakeCloudPart,
        DeleteManager,
        MakeManager,
    };

    Kind kind = UserQuota;
    int subject = 0; ///< which record, path or operation; of a request, how many were started after it
    int detail = 0;  ///< which payload, size, token or other request
    Social::RequestResult result = Social::Success;
};

rc::Gen<CloudAction> AnyCloudAction();

std::ostream& operator<<(std::ostream& stream, const CloudAction& action);

// The arguments that the numbers in an action stand for.
inline constexpr int pathCount = 4;
inline constexpr int recordCount = 7;
inline constexpr int nullRecord = recordCount - 1;

std::string DocumentId(int number);
QString Token(int number);
const std::vector<std::string>& RefusableOperations();
ModelAnswer AnswerOf(const CloudAction& action);

} // namespace Norlis::Test
