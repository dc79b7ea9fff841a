#include "CloudManagerHistory.h"

#include "Histories.h"

#include <ostream>

namespace Norlis::Test {

namespace {

const char* NameOf(CloudAction::Kind kind)
{
    static const std::map<CloudAction::Kind, const char*> names = {
        {CloudAction::Authorization, "Authorization with token"},
        {CloudAction::Logout, "Logout"},
        {CloudAction::UploadPath, "Upload of path"},
        {CloudAction::UploadRecord, "Upload of record"},
        {CloudAction::UploadList, "Upload of the list from path"},
        {CloudAction::Download, "Download of record"},
        {CloudAction::DownloadList, "Download of the list from record"},
        {CloudAction::RetrieveFilesList, "RetrieveFilesList"},
        {CloudAction::RefreshTick, "the refresh timer ticks"},
        {CloudAction::RemoveFile, "RemoveFile of record"},
        {CloudAction::CancelUploading, "CancelUploading of path"},
        {CloudAction::CancelDownloading, "CancelDownloading of record"},
        {CloudAction::UserQuota, "UserQuota"},
        {CloudAction::RetrieveFilePreview, "RetrieveFilePreview of record"},
        {CloudAction::Answer, "the protocol answers request, from the newest,"},
        {CloudAction::AnswerAsAnother, "the protocol answers, under another id, request"},
        {CloudAction::Progress, "the protocol tells progress of request"},
        {CloudAction::ProgressAsAnother, "the protocol tells progress, under another id, of request"},
        {CloudAction::FlipSignedIn, "the protocol signs in or out"},
        {CloudAction::FlipRefusal, "the protocol begins or ends to refuse operation"},
        {CloudAction::LetHashingThrow, "the next hashing throws"},
        {CloudAction::LetNormalizingThrow, "the next normalizing throws"},
        {CloudAction::FileAppears, "there is a file, the local copy of record"},
        {CloudAction::FileVanishes, "there is no file any more, the local copy of record"},
        {CloudAction::ReplaceArguments, "the caller's arguments are replaced, record"},
        {CloudAction::MarkAsSyncing, "a transfer is noted in record"},
        {CloudAction::TakeCloudPart, "the cloud part is taken from record"},
        {CloudAction::DeleteManager, "the manager is deleted"},
        {CloudAction::MakeManager, "a manager is made"},
    };
    return names.at(kind);
}

} // namespace

rc::Gen<CloudAction> AnyCloudAction()
{
    const auto kind = rc::gen::weightedElement<CloudAction::Kind>({
        {2, CloudAction::Authorization},    {1, CloudAction::Logout},
        {6, CloudAction::UploadPath},       {4, CloudAction::UploadRecord},
        {2, CloudAction::UploadList},       {8, CloudAction::Download},
        {2, CloudAction::DownloadList},     {5, CloudAction::RetrieveFilesList},
        {2, CloudAction::RefreshTick},      {5, CloudAction::RemoveFile},
        {6, CloudAction::CancelUploading},  {6, CloudAction::CancelDownloading},
        {3, CloudAction::UserQuota},        {5, CloudAction::RetrieveFilePreview},
        {30, CloudAction::Answer},          {4, CloudAction::AnswerAsAnother},
        {4, CloudAction::Progress},         {1, CloudAction::ProgressAsAnother},
        {3, CloudAction::FlipSignedIn},     {4, CloudAction::FlipRefusal},
        {1, CloudAction::LetHashingThrow},  {1, CloudAction::LetNormalizingThrow},
        {4, CloudAction::FileAppears},      {1, CloudAction::FileVanishes},
        {2, CloudAction::ReplaceArguments}, {1, CloudAction::MarkAsSyncing},
        {1, CloudAction::TakeCloudPart},    {2, CloudAction::DeleteManager},
        {2, CloudAction::MakeManager},
    });
    // Mostly success, and now and then a result that no version of the contract knows.
    const auto result = rc::gen::map(rc::gen::weightedElement<int>({{6, 0}, {3, 1}, {3, 2}, {1, 3}, {1, -1}}),
                                     [](int value) { return static_cast<Social::RequestResult>(value); });
    return rc::gen::build<CloudAction>(
        rc::gen::set(&CloudAction::kind, kind), rc::gen::set(&CloudAction::subject, AnyBelow(7)),
        rc::gen::set(&CloudAction::detail, AnyBelow(6)), rc::gen::set(&CloudAction::result, result));
}

std::ostream& operator<<(std::ostream& stream, const CloudAction& action)
{
    return stream << NameOf(action.kind) << ' ' << action.subject << " (detail " << action.detail << ", result "
                  << static_cast<int>(action.result) << ')';
}

std::string DocumentId(int number)
{
    // Empty, and with a slash, which lets the preview's file name name a folder that is not there.
    static const std::vector<std::string> ids = {"doc", "two", "\xd0\xb4\xd0\xbe\xd0\xba", "", "no/folder"};
    return ids.at(std::size_t(number) % ids.size());
}

QString Token(int number)
{
    static const QStringList tokens = {"token", "", "t\u00f6ken", "token", "token", "token"};
    return tokens.at(number % tokens.size());
}

const std::vector<std::string>& RefusableOperations()
{
    static const std::vector<std::string> operations = {
        "uploadFile", "downloadFile", "deleteFile", "retriveFileList", "userQuota", "retrievePreview", "auth"};
    return operations;
}

ModelAnswer AnswerOf(const CloudAction& action)
{
    const int detail = action.detail;
    ModelAnswer answer;
    answer.result = action.result;

    auto& sharing = answer.sharing;
    sharing.isPrivate = detail % 2 != 0;
    sharing.id = QString::fromStdString(DocumentId(detail));
    sharing.fileName = sharing.id + "\u00fc.pdf";
    sharing.downloadUrl = QUrl("https://cloud.example/" + QString::number(detail));
    sharing.createdAt = QDateTime({2024, 2, 1 + detail}, {1, 2, 3}, Qt::UTC);
    sharing.modifiedAt = detail == 3 ? QDateTime() : QDateTime({2025, 2, 1 + detail}, {1, 2, 3}, Qt::UTC);
    sharing.lifetime = detail * 100 - 100;

    for (int number = 0; number < detail % 3; ++number) {
        PDF::Cloud::ICloudProtocol::FileInfo file;
        file.id = QString::fromStdString(DocumentId(detail + number));
        file.name = "listed \u00e4 " + QString::number(detail) + ".pdf";
        file.size = detail * 5'000'000'000LL;
        file.isShared = true;
        file.md5Hash = "md5\u00e4";
        file.createdAt = "2024-05-06T07:08:09Z";
        file.modifiedAt = detail == 4 ? "yesterday" : "2025-05-06T07:08:09+02:00";
        answer.files << file;
    }

    if (detail != 1) {
        answer.quota.insert("pdf", {4'294'967'296LL * detail + 100, detail - 3});
    }
    answer.quota.insert("other", {7, 8});

    if (detail != 0) {
        answer.picture = QPixmap(detail, 2);
        answer.picture.fill(Qt::red);
    }
    return answer;
}

} // namespace Norlis::Test
