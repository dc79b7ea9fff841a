#pragma once

#include "PictureFolder.h"

#include <base/Lifetime.h>

#include <NorlisCloud/NorlisCloudManager.h>

#include <QTimer>

namespace Norlis::Host {

/// The cloud manager of a session, which asks the cloud for nothing that nobody looks at.
class SessionCloudManager : public PDF::Cloud::NorlisCloudManager {
public:
    /// See NorlisCloudManager. It does not refresh by itself.
    /// \param pictures must outlive this
    SessionCloudManager(const std::shared_ptr<PDF::Cloud::ICloudProtocol>& protocol,
                        const std::shared_ptr<PDF::IHashCalculator>& hashes,
                        const std::shared_ptr<PDF::IFileSystem>& fileSystem, const PictureFolder& pictures);

    /// Does nothing. The manager asks for three previews of each document of every files list by this; which documents
    /// there are the session's index knows, and what is shown FetchPreview fetches.
    void RetrieveFilePreview(const std::shared_ptr<PDF::FileInfo>& file, PDF::FileInfo::PreviewSize previewSize,
                             const QSize& size) override;

    /// What RetrieveFilePreview does in other managers, but the picture comes into the session's folder and not into
    /// the one for temporary files, where every program of the user finds it. Only while somebody is signed in.
    void FetchPreview(const std::shared_ptr<PDF::FileInfo>& file, PDF::FileInfo::PreviewSize previewSize,
                      const QSize& box);

    /// The manager asks for the quota after every upload and removal by this. Then it is asked for a moment later, once
    /// for all that end until then: a service may have to look at all documents for it.
    void UserQuota() override;

private:
    void EndPreview(const std::shared_ptr<PDF::FileInfo>& file, PDF::FileInfo::PreviewSize previewSize,
                    Social::RequestResult result, const QPixmap& picture);

    const std::shared_ptr<PDF::Cloud::ICloudProtocol> protocol;
    const PictureFolder& pictures;
    QTimer quotaTimer;
    bool isFollowUp = false; ///< an upload or a removal has just ended
    Lifetime lifetime;
};

} // namespace Norlis::Host
