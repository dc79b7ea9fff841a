#pragma once

#include <NorlisCloud/NorlisCloudManager.h>

#include <QTimer>

namespace Norlis::Host {

/// The cloud manager of a session, which asks the cloud for nothing that nobody looks at.
class SessionCloudManager : public PDF::Cloud::NorlisCloudManager {
public:
    /// See NorlisCloudManager.
    SessionCloudManager(const std::shared_ptr<PDF::Cloud::ICloudProtocol>& protocol,
                        const std::shared_ptr<PDF::IHashCalculator>& hashes,
                        const std::shared_ptr<PDF::IFileSystem>& fileSystem,
                        const std::shared_ptr<PDF::Settings::ICloudAccountSettings>& settings);

    /// Does nothing. The manager asks for three previews of each document of every files list by this; which documents
    /// there are the session's index knows, and what is shown FetchPreview fetches.
    void RetrieveFilePreview(const std::shared_ptr<PDF::FileInfo>& file, PDF::FileInfo::PreviewSize previewSize,
                             const QSize& size) override;

    /// What RetrieveFilePreview does in other managers.
    void FetchPreview(const std::shared_ptr<PDF::FileInfo>& file, PDF::FileInfo::PreviewSize previewSize,
                      const QSize& size);

    /// The manager asks for the quota after every upload and removal by this. Then it is asked for a moment later, once
    /// for all that end until then: a service may have to look at all documents for it.
    void UserQuota() override;

private:
    QTimer quotaTimer;
    bool isFollowUp = false; ///< an upload or a removal has just ended
};

} // namespace Norlis::Host
