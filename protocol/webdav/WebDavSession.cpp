#include "WebDavSession.h"

#include "ServerErrors.h"
#include <files/AtomicFile.h>

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

DavPath WebDavSession::PathOf(const QByteArray& name) const
{
    DavPath path = collection.Path();
    path.push_back(name);
    return path;
}

QByteArray WebDavSession::NewTemporaryName() const
{
    return Files::AtomicFile::NewTemporaryName(takesHiddenNames.value_or(true)).toUtf8();
}

bool WebDavSession::IsIdle() const
{
    return lookup.IsIdle() && housekeeper.IsIdle();
}

} // namespace Norlis::Social
