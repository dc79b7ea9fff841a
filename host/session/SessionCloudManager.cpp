#include "SessionCloudManager.h"

#include <utility>

namespace Norlis::Host {

using PDF::FileInfo;

namespace {

constexpr int quotaDelay = 1000; // milliseconds

} // namespace

SessionCloudManager::SessionCloudManager(const std::shared_ptr<PDF::Cloud::ICloudProtocol>& protocol,
                                         const std::shared_ptr<PDF::IHashCalculator>& hashes,
                                         const std::shared_ptr<PDF::IFileSystem>& fileSystem,
                                         const std::shared_ptr<PDF::Settings::ICloudAccountSettings>& settings)
    : NorlisCloudManager(protocol, hashes, fileSystem, settings)
{
    const auto noteEnd = [this] { isFollowUp = true; };
    connect(this, &AbstractCloudManager::UploadingFinished, this, noteEnd);
    connect(this, &AbstractCloudManager::RemoveFileFinished, this, noteEnd);
    quotaTimer.setSingleShot(true);
    quotaTimer.setInterval(quotaDelay);
    connect(&quotaTimer, &QTimer::timeout, this, [this, cloud = protocol.get()] { // which the manager keeps
        if (cloud->loggedIn()) {
            NorlisCloudManager::UserQuota();
        }
    });
}

void SessionCloudManager::RetrieveFilePreview(const std::shared_ptr<FileInfo>&, FileInfo::PreviewSize, const QSize&) {}

void SessionCloudManager::FetchPreview(const std::shared_ptr<FileInfo>& file, FileInfo::PreviewSize previewSize,
                                       const QSize& size)
{
    NorlisCloudManager::RetrieveFilePreview(file, previewSize, size);
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
