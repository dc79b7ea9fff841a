#include "SessionCloudManager.h"

#include "Records.h"

#include <contracts/NorlisCloudProtocol.h>

#include <utility>

namespace Norlis::Host {

using PDF::FileInfo;
using Social::NorlisCloudProtocol;

namespace {

constexpr int quotaDelay = 1000; // milliseconds
constexpr qint64 notStarted = -1;

/// SessionLists refreshes.
class NoAutoRefresh : public PDF::Settings::ICloudAccountSettings {
public:
    bool IsAutoRefreshEnabled() override
    {
        return false;
    }

    int GetAutoRefreshInterval() override
    {
        return 0;
    }
};

} // namespace

SessionCloudManager::SessionCloudManager(const std::shared_ptr<PDF::Cloud::ICloudProtocol>& protocol,
                                         const std::shared_ptr<PDF::IHashCalculator>& hashes,
                                         const std::shared_ptr<PDF::IFileSystem>& fileSystem,
                                         const PictureFolder& pictures)
    : NorlisCloudManager(protocol, hashes, fileSystem, std::make_shared<NoAutoRefresh>()),
      protocol(protocol),
      pictures(pictures)
{
    const auto noteEnd = [this] { isFollowUp = true; };
    connect(this, &AbstractCloudManager::UploadingFinished, this, noteEnd);
    connect(this, &AbstractCloudManager::RemoveFileFinished, this, noteEnd);
    quotaTimer.setSingleShot(true);
    quotaTimer.setInterval(quotaDelay);
    connect(&quotaTimer, &QTimer::timeout, this, [this] {
        if (this->protocol->loggedIn()) {
            NorlisCloudManager::UserQuota();
        }
    });
}

void SessionCloudManager::RetrieveFilePreview(const std::shared_ptr<FileInfo>&, FileInfo::PreviewSize, const QSize&) {}

void SessionCloudManager::FetchPreview(const std::shared_ptr<FileInfo>& file, FileInfo::PreviewSize previewSize,
                                       const QSize& box)
{
    const QMap<QString, QString> fields = {
        {NorlisCloudProtocol::ID, IdOf(*file)},
        {NorlisCloudProtocol::FILE_PREVIEW_HEIGHT, QString::number(box.height())},
        {NorlisCloudProtocol::FILE_PREVIEW_WIDTH, QString::number(box.width())},
    };
    const auto guard = lifetime.Watch();
    const qint64 request = protocol->retrievePreview(
        fields, [this, guard, file, previewSize](qint64, Social::RequestResult result, const QPixmap& picture) {
            if (guard) {
                const auto fetched = file; // a slot may take away this function
                EndPreview(fetched, previewSize, result, picture);
            }
        });
    if (request == notStarted && guard) {
        emit RetrieveFilePreviewError(file, previewSize, "Retrieve file preview failed");
    }
}

void SessionCloudManager::EndPreview(const std::shared_ptr<FileInfo>& file, FileInfo::PreviewSize previewSize,
                                     Social::RequestResult result, const QPixmap& picture)
{
    if (result == Social::Canceled) {
        emit RetrieveFilePreviewCanceled(file);
        return;
    }
    if (result != Social::Success) {
        emit RetrieveFilePreviewError(file, previewSize, "Retrieving file preview error");
        return;
    }
    const auto id = IdOf(*file);
    if (!pictures.Save(picture, id, previewSize)) {
        const auto size = QString::fromStdString(FileInfo::previewSizetoString(previewSize));
        emit RetrieveFilePreviewError(file, previewSize, "Cannot save preview for: " + id + " with size: " + size);
        return;
    }
    file->GetRedactableCloudInfo()->SetPreviewPathBySize(ToPath(pictures.PathOf(id, previewSize)), previewSize);
    emit RetrieveFilePreviewFinished(file, previewSize);
}

void SessionCloudManager::UserQuota()
{
    if (!std::exchange(isFollowUp, false)) {
        NorlisCloudManager::UserQuota();
    } else if (!quotaTimer.isActive()) {
        quotaTimer.start();
    }
}

} // namespace Norlis::Host
