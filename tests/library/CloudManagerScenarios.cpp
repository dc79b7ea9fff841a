#include "CloudManagerScenarios.h"

#include <ostream>

namespace Norlis::Test {

namespace {

using Bench = CloudManagerBench;
using CloudFiles = QList<PDF::Cloud::ICloudProtocol::FileInfo>;
using Start = qint64 (Bench::*)();

/// A call of the manager made while nobody is signed in.
std::function<void(Bench&)> SignedOut(std::function<void(Bench&)> call)
{
    return [call](Bench& bench) {
        bench.protocol->signedIn = false;
        call(bench);
    };
}

/// A call of the manager made while the protocol refuses an operation.
std::function<void(Bench&)> Refused(const std::string& operation, std::function<void(Bench&)> call)
{
    return [=](Bench& bench) {
        bench.protocol->refused = {operation};
        call(bench);
    };
}

/// A request that is answered.
template <typename... Payload>
std::function<void(Bench&)> Answered(Start start, Social::RequestResult result, const Payload&... payload)
{
    return [=](Bench& bench) {
        const auto id = (bench.*start)();
        bench.protocol->Answer(id, result, payload...);
    };
}

std::function<void(Bench&)> AnsweredSignedOut(Start start, Social::RequestResult result)
{
    return [=](Bench& bench) {
        const auto id = (bench.*start)();
        bench.protocol->signedIn = false;
        bench.protocol->Answer(id, result);
    };
}

std::function<void(Bench&)> Progressed(Start start)
{
    return [=](Bench& bench) {
        const auto id = (bench.*start)();
        bench.protocol->Progress(id, 42);
    };
}

CloudFiles TwoCloudFiles()
{
    CloudFiles files(QVector<CloudFiles::value_type>(2).toList());
    files[0].id = "a";
    files[1].id = "b";
    return files;
}

/// The answer to a files-list request, whose previews are requested on the way.
void AnswerFilesList(Bench& bench)
{
    const auto id = bench.StartFilesList();
    bench.protocol->Answer(id, Social::Success, TwoCloudFiles());
}

void AnswerPreviewWithPicture(Bench& bench)
{
    QPixmap picture(4, 4);
    picture.fill(Qt::red);
    const auto id = bench.StartPreview();
    bench.protocol->Answer(id, Social::Success, picture);
}

std::vector<Scenario> MakeScenarios()
{
    const auto uploadPath = [](Bench& bench) { bench.manager->Upload(bench.path); };
    const auto uploadRecord = [](Bench& bench) { bench.manager->Upload(bench.file); };
    const auto uploadList = [](Bench& bench) { bench.manager->Upload(bench.paths); };
    const auto download = [](Bench& bench) { bench.manager->Download(bench.file, bench.directory); };
    const auto downloadList = [](Bench& bench) { bench.manager->Download(bench.files, bench.directory); };
    const auto filesList = [](Bench& bench) { bench.manager->RetrieveFilesList(); };
    const auto removeFile = [](Bench& bench) { bench.manager->RemoveFile(bench.file); };
    const auto quota = [](Bench& bench) { bench.manager->UserQuota(); };
    const auto preview = [](Bench& bench) {
        bench.manager->RetrieveFilePreview(bench.file, FileInfo::PreviewSize::Small, {40, 40});
    };
    const auto cancelUploading = [](Bench& bench) { bench.manager->CancelUploading(bench.path); };
    const auto cancelDownloading = [](Bench& bench) { bench.manager->CancelDownloading(bench.file); };
    const auto authorization = [](Bench& bench) { bench.manager->Authorization(bench.token); };

    return {
        {"AuthorizationRequired", "ByUpload", SignedOut(uploadPath)},
        {"AuthorizationRequired", "ByUploadOfRecord", SignedOut(uploadRecord)},
        {"AuthorizationRequired", "ByUploadOfList", SignedOut(uploadList)},
        {"AuthorizationRequired", "ByDownload", SignedOut(download)},
        {"AuthorizationRequired", "ByDownloadOfList", SignedOut(downloadList)},
        {"AuthorizationRequired", "ByFilesList", SignedOut(filesList)},
        {"AuthorizationRequired", "ByRemoval", SignedOut(removeFile)},
        {"AuthorizationRequired", "ByQuota", SignedOut(quota)},
        {"AuthorizationRequired", "ByPreview", SignedOut(preview)},
        {"AuthorizationRequired", "ByCancelUploading", SignedOut(cancelUploading)},
        {"AuthorizationRequired", "ByCancelDownloading", SignedOut(cancelDownloading)},
        {"AuthorizationRequired", "InTheMiddleOfUploads",
         [=](Bench& bench) {
             bench.protocol->inside["uploadFile"] = [&bench](qint64) { bench.protocol->signedIn = false; };
             uploadList(bench);
         }},
        {"AuthorizationRequired", "InTheMiddleOfDownloads",
         [=](Bench& bench) {
             bench.protocol->inside["downloadFile"] = [&bench](qint64) { bench.protocol->signedIn = false; };
             downloadList(bench);
         }},
        {"AuthorizationRequired", "ByPreviewsOfAList",
         [](Bench& bench) {
             const auto id = bench.StartFilesList();
             bench.protocol->signedIn = false;
             bench.protocol->Answer(id, Social::Success, TwoCloudFiles());
         }},
        {"AuthorizationRequired", "ByQuotaAfterUpload", AnsweredSignedOut(&Bench::StartUpload, Social::Success)},
        {"AuthorizationRequired", "ByQuotaAfterRemoval", AnsweredSignedOut(&Bench::StartRemoval, Social::Success)},
        {"AuthorizationRequired", "ByCleanUpAfterError", AnsweredSignedOut(&Bench::StartUpload, Social::Error)},
        {"AuthorizationRequired", "ByCleanUpAfterCancel", AnsweredSignedOut(&Bench::StartUpload, Social::Canceled)},
        {"AuthorizationCompleted", "", Answered(&Bench::StartAuthorization, Social::Success)},
        {"AuthorizationFailed", "ByEmptyToken", [](Bench& bench) { bench.manager->Authorization(QString()); }},
        {"AuthorizationFailed", "ByRefusal", Refused("auth", authorization)},
        {"AuthorizationFailed", "ByAnswer", Answered(&Bench::StartAuthorization, Social::Error)},
        {"LoggedOut", "", [](Bench& bench) { bench.manager->Logout(); }},

        {"RetrievingFilesListStarted", "", filesList},
        {"RetrievingFilesListFinished", "", AnswerFilesList},
        {"RetrievingFilesListFinished", "Empty", Answered(&Bench::StartFilesList, Social::Success)},
        {"RetrievingFilesListErrorRequested", "ByRefusal", Refused("retriveFileList", filesList)},
        {"RetrievingFilesListErrorRequested", "ByAnswer", Answered(&Bench::StartFilesList, Social::Error)},
        {"RetrievingFilesListCanceled", "", Answered(&Bench::StartFilesList, Social::Canceled)},

        {"UploadingStarted", "OfPath", uploadPath},
        {"UploadingStarted", "OfRecord", uploadRecord},
        {"UploadingStarted", "OfList", uploadList},
        {"UploadingProgressValueChanged", "", Progressed(&Bench::StartUpload)},
        {"UploadingFinished", "", Answered(&Bench::StartUpload, Social::Success)},
        {"UploadingFileRequestError", "ByRefusal", Refused("uploadFile", uploadPath)},
        {"UploadingFileRequestError", "ByRefusalInAList", Refused("uploadFile", uploadList)},
        {"UploadingFileRequestError", "ByAnswer", Answered(&Bench::StartUpload, Social::Error)},
        {"UploadingCanceled", "ByService", Answered(&Bench::StartUpload, Social::Canceled)},
        {"UploadingCanceled", "ByCaller",
         [=](Bench& bench) {
             bench.StartUpload();
             cancelUploading(bench);
         }},

        {"DownloadingStarted", "OfRecord", download},
        {"DownloadingStarted", "OfList", downloadList},
        {"DownloadingProgressValueChanged", "", Progressed(&Bench::StartDownload)},
        {"DownloadingFinished", "", Answered(&Bench::StartDownload, Social::Success)},
        {"DownloadingFileRequestError", "ByRefusal", Refused("downloadFile", download)},
        {"DownloadingFileRequestError", "ByRefusalInAList", Refused("downloadFile", downloadList)},
        {"DownloadingFileRequestError", "ByAnswer", Answered(&Bench::StartDownload, Social::Error)},
        {"DownloadingCanceled", "ByService", Answered(&Bench::StartDownload, Social::Canceled)},
        {"DownloadingCanceled", "ByCaller",
         [=](Bench& bench) {
             bench.StartDownload();
             cancelDownloading(bench);
         }},

        {"RemoveFileFinished", "", Answered(&Bench::StartRemoval, Social::Success)},
        {"RemovingFileError", "ByRefusal", Refused("deleteFile", removeFile)},
        {"RemovingFileError", "ByAnswer", Answered(&Bench::StartRemoval, Social::Error)},
        {"RemovingFileError", "ByRefusedCleanUpAfterError",
         Refused("deleteFile", Answered(&Bench::StartUpload, Social::Error))},
        {"RemovingFileError", "ByRefusedCleanUpAfterCancel",
         Refused("deleteFile", Answered(&Bench::StartUpload, Social::Canceled))},

        {"RetrieveFilePreviewStarted", "", preview},
        {"RetrieveFilePreviewStarted", "ForAList", AnswerFilesList},
        {"RetrieveFilePreviewFinished", "", AnswerPreviewWithPicture},
        {"RetrieveFilePreviewError", "ByNeverUploaded",
         [=](Bench& bench) {
             bench.file->GetRedactableCloudInfo().reset();
             preview(bench);
         }},
        {"RetrieveFilePreviewError", "ByRefusal", Refused("retrievePreview", preview)},
        {"RetrieveFilePreviewError", "ByRefusalForAList", Refused("retrievePreview", AnswerFilesList)},
        {"RetrieveFilePreviewError", "ByAnswer", Answered(&Bench::StartPreview, Social::Error)},
        {"RetrieveFilePreviewError", "BySaveFailure", Answered(&Bench::StartPreview, Social::Success)},
        {"RetrieveFilePreviewCanceled", "", Answered(&Bench::StartPreview, Social::Canceled)},

        {"RetrievingUserQuotaStarted", "", quota},
        {"RetrievingUserQuotaStarted", "AfterUpload", Answered(&Bench::StartUpload, Social::Success)},
        {"RetrievingUserQuotaStarted", "AfterRemoval", Answered(&Bench::StartRemoval, Social::Success)},
        {"RetrievingUserQuotaFinished", "", Answered(&Bench::StartQuota, Social::Success)},
        {"RetrievingUserQuotaErrorRequested", "ByRefusal", Refused("userQuota", quota)},
        {"RetrievingUserQuotaErrorRequested", "ByAnswer", Answered(&Bench::StartQuota, Social::Error)},
        {"RetrievingUserQuotaCanceled", "", Answered(&Bench::StartQuota, Social::Canceled)},
    };
}

} // namespace

const std::vector<Scenario>& CloudManagerScenarios()
{
    static const auto scenarios = MakeScenarios();
    return scenarios;
}

const std::vector<RequestKind>& RequestKinds()
{
    static const std::vector<RequestKind> kinds = {
        {"auth", &Bench::StartAuthorization, false}, {"retriveFileList", &Bench::StartFilesList, false},
        {"uploadFile", &Bench::StartUpload, true},   {"downloadFile", &Bench::StartDownload, true},
        {"deleteFile", &Bench::StartRemoval, false}, {"retrievePreview", &Bench::StartPreview, false},
        {"userQuota", &Bench::StartQuota, false},
    };
    return kinds;
}

std::ostream& operator<<(std::ostream& stream, const Scenario& scenario)
{
    return stream << scenario.signal << scenario.way;
}

std::ostream& operator<<(std::ostream& stream, const RequestKind& kind)
{
    return stream << kind.operation;
}

} // namespace Norlis::Test
