#include "Reply.h"

namespace Norlis::Social {

OAuth2::TransferredFile TransferredFileOf(const QString& localPath, const QString& md5Hash,
                                          const Files::FileIdentity& identity, bool isLasting)
{
    return {-1, localPath, md5Hash, identity.ToString(), isLasting};
}

OAuth2::TransferredFile DeliveredFileOf(const QString& localPath, const QString& md5Hash,
                                        const Files::FileIdentity& identity)
{
    const std::chrono::nanoseconds modified(identity.modifiedNanoseconds);
    return TransferredFileOf(localPath, md5Hash, identity, Files::TimeUntilSettled(modified).count() <= 0);
}

Reply FailureReply(const QString& what, const QString& document, const QString& reason, const QString& advice)
{
    OAuth2::Failure failure;
    failure.what = what;
    failure.document = document;
    failure.reason = reason;
    failure.advice = advice;
    return {Error, {}, failure};
}

} // namespace Norlis::Social
