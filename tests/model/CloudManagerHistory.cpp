#include "CloudManagerHistory.h"

#include "Histories.h"

#include <ostream>

namespace Norlis::Test {

namespace {

const char* NameOf(CloudDeed::Kind kind)
{
    static const std::map<CloudDeed::Kind, const char*> names = {
        {CloudDeed::Authorization, "Authorization with token"},
        {CloudDeed::Logout, "Logout"},
        {CloudDeed::UploadPath, "Upload of path"},
        {CloudDeed::UploadRecord, "Upload of record"},
        {CloudDeed::UploadList, "Upload of the list from path"},
        {CloudDeed::Download, "Download of record"},
        {CloudDeed::DownloadList, "Download of the list from record"},
        {CloudDeed::RetrieveFilesList, "RetrieveFilesList"},
        {CloudDeed::RefreshTick, "the refresh timer ticks"},
        {CloudDeed::RemoveFile, "RemoveFile of record"},
        {CloudDeed::CancelUploading, "CancelUploading of path"},
        {CloudDeed::CancelDownloading, "CancelDownloading of record"},
        {CloudDeed::UserQuota, "UserQuota"},
        {CloudDeed::RetrieveFilePreview, "RetrieveFilePreview of record"},
        {CloudDeed::Answer, "the protocol answers request, from the newest,"},
        {CloudDeed::AnswerAsAnother, "the protocol answers, under another id, request"},
        {CloudDeed::Progress, "the protocol tells progress of request"},
        {CloudDeed::ProgressAsAnother, "the protocol tells progress, under another id, of request"},
        {CloudDeed::FlipSignedIn, "the protocol signs in or out"},
        {CloudDeed::FlipRefusal, "the protocol begins or ends to refuse operation"},
        {CloudDeed::LetHashingThrow, "the next hashing throws"},
        {CloudDeed::LetNormalizingThrow, "the next normalizing throws"},
        {CloudDeed::FileAppears, "there is a file, the local copy of record"},
        {CloudDeed::FileVanishes, "there is no file any more, the local copy of record"},
        {CloudDeed::ReplaceArguments, "the caller's arguments are replaced, record"},
        {CloudDeed::MarkAsSyncing, "a transfer is noted in record"},
        {CloudDeed::TakeCloudPart, "the cloud part is taken from record"},
        {CloudDeed::DeleteManager, "the manager is deleted"},
        {CloudDeed::MakeManager, "a manager is made"},
    };
    return names.at(kind);
}

} // namespace

rc::Gen<CloudDeed> AnyCloudDeed()
{
    const auto kind = rc::gen::weightedElement<CloudDeed::Kind>({
        {2, CloudDeed::Authorization},    {1, CloudDeed::Logout},
        {6, CloudDeed::UploadPath},       {4, CloudDeed::UploadRecord},
        {2, CloudDeed::UploadList},       {8, CloudDeed::Download},
        {2, CloudDeed::DownloadList},     {5, CloudDeed::RetrieveFilesList},
        {2, CloudDeed::RefreshTick},      {5, CloudDeed::RemoveFile},
        {6, CloudDeed::CancelUploading},  {6, CloudDeed::CancelDownloading},
        {3, CloudDeed::UserQuota},        {5, CloudDeed::RetrieveFilePreview},
        {30, CloudDeed::Answer},          {4, CloudDeed::AnswerAsAnother},
        {4, CloudDeed::Progress},         {1, CloudDeed::ProgressAsAnother},
        {3, CloudDeed::FlipSignedIn},     {4, CloudDeed::FlipRefusal},
        {1, CloudDeed::LetHashingThrow},  {1, CloudDeed::LetNormalizingThrow},
        {4, CloudDeed::FileAppears},      {1, CloudDeed::FileVanishes},
        {2, CloudDeed::ReplaceArguments}, {1, CloudDeed::MarkAsSyncing},
        {1, CloudDeed::TakeCloudPart},    {2, CloudDeed::DeleteManager},
        {2, CloudDeed::MakeManager},
    });
    // Mostly success, and now and then a result that no version of the contract knows.
    const auto result = rc::gen::map(rc::gen::weightedElement<int>({{6, 0}, {3, 1}, {3, 2}, {1, 3}, {1, -1}}),
                                     [](int value) { return static_cast<Social::RequestResult>(value); });
    return rc::gen::build<CloudDeed>(
        rc::gen::set(&CloudDeed::kind, kind), rc::gen::set(&CloudDeed::subject, AnyBelow(7)),
        rc::gen::set(&CloudDeed::detail, AnyBelow(6)), rc::gen::set(&CloudDeed::result, result));
}

std::ostream& operator<<(std::ostream& stream, const CloudDeed& deed)
{
    return stream << NameOf(deed.kind) << ' ' << deed.subject << " (detail " << deed.detail << ", result "
                  << static_cast<int>(deed.result) << ')';
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

ModelAnswer AnswerOf(const CloudDeed& deed)
{
    const int detail = deed.detail;
    ModelAnswer answer;
    answer.result = deed.result;

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
