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

Reply FailureReply(const QString& what, const QString& document, const QString& reason, const QString& advice,
                   OAuth2::FailureKind kind)
{
    return {Error, {}, {-1, what, document, reason, advice, kind}};
}

Reply TargetReply(const QString& what, const QString& document, const Files::TargetProblem& problem)
{
    return FailureReply(what, document, problem.reason, problem.advice,
                        problem.isNameTaken ? OAuth2::FailureKind::NameTaken : OAuth2::FailureKind::Other);
}

Reply SignedOutReply(const QString& what)
{
    return FailureReply(what, {}, "Nobody is signed in", "Sign in first.", OAuth2::FailureKind::NotSignedIn);
}

} // namespace Norlis::Social
