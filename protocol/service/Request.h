#pragma once

#include "TransferToken.h"
#include <files/LocalTarget.h>

#include <QSize>

#include <memory>
#include <variant>

/// What the protocol object asks of a cloud service. Values, which travel from the thread of the one to that of the
/// other.
namespace Norlis::Social::Request {

struct SignIn {
    QString token;
};
/// Forgets the token and everything that was learnt with it.
struct SignOut {};
struct UserName {};
struct UserPage {};
struct UserPictureAddress {};
struct UserPicture {};
struct Info {
    QString document;
};
struct List {};
/// See NorlisCloudProtocol::awaitChange.
struct Change {};
struct Download {
    QString document;
    QString localPath;
    Files::ReplaceableFile replaceable;
    std::shared_ptr<TransferToken> token;
};
struct Upload {
    QString localPath;
    QString document; ///< the one to replace; empty makes a new one
    QString mimeType;
    QString md5Hash; ///< of the local file; empty when unknown
    std::shared_ptr<TransferToken> token;
};
struct Remove {
    QString document;
};
/// See NorlisCloudProtocol::copyMoved.
struct CopyMoved {
    QString document;
    QString from;
    QString to;
};
/// See NorlisCloudProtocol::acceptListedVersion.
struct AcceptVersion {
    QString document;
    QString localPath;
    QString md5Hash;
};
struct Quota {};
struct Capabilities {};
struct Preview {
    QString document;
    int page;  ///< from 1
    QSize box; ///< the picture fits into it without being distorted
};
/// See NorlisCloudProtocol::previewLocalFile.
struct LocalPreview {
    QString localPath;
    int page; ///< from 1
    QSize box;
};

using Any =
    std::variant<SignIn, SignOut, UserName, UserPage, UserPictureAddress, UserPicture, Info, List, Change, Download,
                 Upload, Remove, CopyMoved, AcceptVersion, Quota, Capabilities, Preview, LocalPreview>;

/// Whether somebody has to be signed in for it.
inline bool NeedsSignIn(const Any& request)
{
    return !std::holds_alternative<SignIn>(request) && !std::holds_alternative<SignOut>(request) &&
           !std::holds_alternative<LocalPreview>(request);
}

} // namespace Norlis::Social::Request
