#include "WebDavSession.h"

#include "ServerErrors.h"
#include <base/Utf8.h>
#include <files/AtomicFile.h>

namespace Norlis::Social {

namespace {

const auto anyCopy = QStringLiteral("/"); // whichever file it was sent from

/// Beside the documents in the memory of versions, whose ids have no blank.
QString UnconfirmedId(const QByteArray& name)
{
    return "unconfirmed " + FromUtf8(name);
}

} // namespace

WebDavSession::WebDavSession(const Collection& collection, const HttpClient::Settings& settings, const Secrets& secrets,
                             const QString& user, VersionMemory& versions, std::function<void()> onIdle)
    : collection(collection),
      secrets(secrets),
      user(user),
      versions(versions),
      http(settings, this->secrets, std::move(onIdle)),
      lookup(*this),
      housekeeper(*this),
      looks(*this)
{
}

Reply WebDavSession::FailureReplyTo(const QString& what, const QString& document, const HttpResponse& response) const
{
    const OAuth2::Failure failure = ExplainFailure(response, secrets);
    Reply reply = FailureReply(what, document, failure.reason, failure.advice, failure.kind);
    reply.failure.details = failure.details;
    reply.isSignedOut = response.Status() == 401;
    return reply;
}

CloudFile WebDavSession::EntryOf(const DavDocument& document)
{
    CloudFile entry = document.ToCloudFile();
    if (document.md5.isEmpty()) {
        const QString md5Hash =
            versions.HashOf(document.id, [&](const QString& version) { return document.IsVersion(version); });
        const bool hasVersion = !document.etag.isEmpty() || document.modifiedAt.isValid();
        entry.md5Hash = md5Hash.isEmpty() && hasVersion ? "version:" + document.Version() : md5Hash;
    }
    return entry;
}

void WebDavSession::NoteUnconfirmed(const QByteArray& name, const QByteArray& md5)
{
    versions.Remember(UnconfirmedId(name), anyCopy, {{}, QString::fromLatin1(md5)});
}

bool WebDavSession::IsUnconfirmed(const QByteArray& name, const QByteArray& md5) const
{
    const auto sent = versions.Find(UnconfirmedId(name), anyCopy);
    return sent && sent->md5Hash.toLatin1() == md5;
}

void WebDavSession::ForgetUnconfirmed(const QByteArray& name)
{
    versions.Forget(UnconfirmedId(name));
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
