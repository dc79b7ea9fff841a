#include "SignalJournal.h"

#include <contracts/AbstractCloudManager.h>
#include <contracts/AbstractFileManager.h>

#include <utility>

namespace Norlis::TestKit {

namespace {

using PDF::AbstractFileManager;
using PDF::FileInfo;
using PDF::Cloud::AbstractCloudManager;

std::string Text(int value)
{
    return std::to_string(value);
}

// By value: the copy is made here, where the address sanitizer notices a dangling text; Qt's own code is not
// instrumented.
std::string Text(QString text) // NOLINT(performance-unnecessary-value-param)
{
    return text.toStdString();
}

std::string Text(const std::string& id)
{
    return '"' + id + '"';
}

std::string Text(FileInfo::PreviewSize size)
{
    return std::to_string(static_cast<int>(size));
}

std::string Text(const std::shared_ptr<const FileInfo>& file)
{
    return file ? std::const_pointer_cast<FileInfo>(file)->GetId() : "null";
}

std::string Text(const QList<std::shared_ptr<FileInfo>>& files)
{
    std::string text;
    for (const auto& file : files) {
        text += (text.empty() ? "" : " ") + Text(file);
    }
    return '[' + text + ']';
}

template <typename Manager, typename... Args>
void Write(Manager& manager, const std::shared_ptr<Journal>& journal, const std::string& name,
           void (Manager::*signal)(Args...))
{
    QObject::connect(&manager, signal, [journal, name](const std::decay_t<Args>&... args) {
        std::string text;
        [[maybe_unused]] const char* separator = ""; // unused for a signal without arguments
        ((text += std::exchange(separator, ", ") + Text(args)), ...);
        journal->Write(name + '(' + text + ')');
    });
}

} // namespace

void WriteSignals(AbstractCloudManager& manager, const std::shared_ptr<Journal>& journal)
{
    using M = AbstractCloudManager;
    const auto write = [&](const char* name, auto signal) { Write(manager, journal, name, signal); };
    write("AuthorizationRequired", &M::AuthorizationRequired);
    write("AuthorizationCompleted", &M::AuthorizationCompleted);
    write("AuthorizationFailed", &M::AuthorizationFailed);
    write("LoggedOut", &M::LoggedOut);
    write("RetrievingFilesListStarted", &M::RetrievingFilesListStarted);
    write("RetrievingFilesListFinished", &M::RetrievingFilesListFinished);
    write("RetrievingFilesListErrorRequested", &M::RetrievingFilesListErrorRequested);
    write("RetrievingFilesListCanceled", &M::RetrievingFilesListCanceled);
    write("UploadingStarted", &M::UploadingStarted);
    write("UploadingProgressValueChanged", &M::UploadingProgressValueChanged);
    write("UploadingFinished", &M::UploadingFinished);
    write("UploadingFileRequestError", &M::UploadingFileRequestError);
    write("UploadingCanceled", &M::UploadingCanceled);
    write("DownloadingStarted", &M::DownloadingStarted);
    write("DownloadingProgressValueChanged", &M::DownloadingProgressValueChanged);
    write("DownloadingFinished", &M::DownloadingFinished);
    write("DownloadingFileRequestError", &M::DownloadingFileRequestError);
    write("DownloadingCanceled", &M::DownloadingCanceled);
    write("RemoveFileFinished", &M::RemoveFileFinished);
    write("RemovingFileError", &M::RemovingFileError);
    write("RetrieveFilePreviewStarted", &M::RetrieveFilePreviewStarted);
    write("RetrieveFilePreviewFinished", &M::RetrieveFilePreviewFinished);
    write("RetrieveFilePreviewError", &M::RetrieveFilePreviewError);
    write("RetrieveFilePreviewCanceled", &M::RetrieveFilePreviewCanceled);
    write("RetrievingUserQuotaStarted", &M::RetrievingUserQuotaStarted);
    write("RetrievingUserQuotaFinished", &M::RetrievingUserQuotaFinished);
    write("RetrievingUserQuotaErrorRequested", &M::RetrievingUserQuotaErrorRequested);
    write("RetrievingUserQuotaCanceled", &M::RetrievingUserQuotaCanceled);
}

void WriteSignals(AbstractFileManager& manager, const std::shared_ptr<Journal>& journal)
{
    using M = AbstractFileManager;
    Write(manager, journal, "FileAdded", qOverload<>(&M::FileAdded));
    Write(manager, journal, "FileAdded", qOverload<const std::shared_ptr<FileInfo>&>(&M::FileAdded));
    Write(manager, journal, "FileRemoved", qOverload<>(&M::FileRemoved));
    Write(manager, journal, "FileRemoved", qOverload<const std::shared_ptr<const FileInfo>&>(&M::FileRemoved));
    Write(manager, journal, "FileUpdated", qOverload<int>(&M::FileUpdated));
    Write(manager, journal, "FileUpdated", qOverload<const std::string&>(&M::FileUpdated));
}

} // namespace Norlis::TestKit
