#include "WebDavSession.h"

#include "ServerErrors.h"

namespace Norlis::Social {

WebDavSession::WebDavSession(const Collection& collection, const HttpClient::Settings& settings, const Secrets& secrets,
                             const QString& user, std::function<void()> onIdle)
    : collection(collection),
      secrets(secrets),
      user(user),
      http(settings, this->secrets, std::move(onIdle)),
      lookup(*this),
      housekeeper(*this)
{
}

Reply WebDavSession::FailureReplyTo(const QString& what, const QString& document, const HttpResponse& response) const
{
    const OAuth2::Failure failure = ExplainFailure(response, secrets);
    Reply reply = FailureReply(what, document, failure.reason, failure.advice);
    reply.isSignedOut = response.Status() == 401;
    return reply;
}

bool WebDavSession::IsIdle() const
{
    return lookup.IsIdle() && housekeeper.IsIdle();
}

} // namespace Norlis::Social
