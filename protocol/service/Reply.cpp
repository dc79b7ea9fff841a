#include "Reply.h"

namespace Norlis::Social {

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
