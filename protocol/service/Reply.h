#pragma once

#include <contracts/Ability.h>
#include <contracts/NorlisCloudSharingResult.h>
#include <contracts/OAuth2.h>
#include <files/FileIdentity.h>
#include <files/LocalTarget.h>

#include <QImage>

#include <variant>

namespace Norlis::Social {

using CloudFile = Ability::File<NorlisCloudSharingResult>::FileInfo;
using QuotaByApplication = QMap<QString, Ability::Quota::QuotaValue>;
using ServiceCapabilities = QList<QPair<QString, QString>>; ///< see NorlisCloudProtocol::probeService

/// How a request ended. A value, which travels from the service's thread to that of the protocol object.
struct Reply {
    using Payload = std::variant<std::monostate, QString, QUrl, QImage, CloudFile, QList<CloudFile>,
                                 NorlisCloudSharingResult, QuotaByApplication, ServiceCapabilities>;

    RequestResult result = Success;
    Payload payload;
    OAuth2::Failure failure;           ///< of an Error
    bool isSignedOut = false;          ///< the service no longer accepts the token
    bool mayLackDocuments = false;     ///< of a list
    OAuth2::TransferredFile file = {}; ///< of a transfer that succeeded; without a path of any other request
    int pageCount = 0;                 ///< of the document of a preview; 0 when it is not known
};

/// What a transfer tells of the local file.
/// \param identity of the file when every byte of it had been seen
OAuth2::TransferredFile TransferredFileOf(const QString& localPath, const QString& md5Hash,
                                          const Files::FileIdentity& identity, bool isLasting);

/// The same of a file that a transfer has written and given its name: a renaming leaves the modification time alone.
OAuth2::TransferredFile DeliveredFileOf(const QString& localPath, const QString& md5Hash,
                                        const Files::FileIdentity& identity);

/// A reply that says what went wrong.
Reply FailureReply(const QString& what, const QString& document, const QString& reason, const QString& advice = {},
                   OAuth2::FailureKind kind = OAuth2::FailureKind::Other);

/// The reply to a download that cannot be written to its target.
Reply TargetReply(const QString& what, const QString& document, const Files::TargetProblem& problem);

/// The reply to a request that needs somebody to be signed in.
Reply SignedOutReply(const QString& what);

} // namespace Norlis::Social
