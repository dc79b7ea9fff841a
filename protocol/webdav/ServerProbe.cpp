#include "ServerProbe.h"

#include <files/AtomicFile.h>
#include <protocol/dav/EntityTag.h>
#include <protocol/dav/ErrorBody.h>

namespace Norlis::Social {

namespace {

const auto what = QStringLiteral("Checking the service");
const QByteArray content = "probe";
const QByteArray unknownTag = "\"norlis\"";
const QByteArray someMd5 = "d41d8cd98f00b204e9800998ecf8427e";
constexpr int maxFindingLength = 80; // characters of what a server says

QString YesOrNo(bool isSo)
{
    return isSo ? QStringLiteral("yes") : QStringLiteral("no");
}

/// What a status says of something that the server should have refused.
QString Refusal(const HttpResponse& response)
{
    if (response.Status() == 412) {
        return QStringLiteral("yes");
    }
    return response.HasSucceeded() ? QStringLiteral("no") : QStringLiteral("not known");
}

} // namespace

ServerProbe::ServerProbe(const std::shared_ptr<WebDavSession>& session, Finish finish)
    : Operation(session, std::move(finish)),
      first(Files::AtomicFile::NewTemporaryName().toUtf8()),
      second(Files::AtomicFile::NewTemporaryName().toUtf8())
{
}

void ServerProbe::Start()
{
    Note("service", "WebDAV");
    Plan();
    TakeNextStep();
}

void ServerProbe::Plan()
{
    const QByteArray firstUrl = session->collection.UrlOf(first);
    const QByteArray secondUrl = session->collection.UrlOf(second);
    HttpRequest put = Put(firstUrl);
    put.body = content;
    const HttpRequest move = OnLane(HttpRequest::Lane::Transfer, Move(firstUrl, secondUrl, false));
    steps.push_back({Options(session->collection.Url()), [this](const HttpResponse& response) {
                         NoteReported("software", response.head.Field("server"));
                         NoteReported("DAV classes", response.head.Field("dav"));
                     }});
    steps.push_back(
        {PropFind(session->collection.Url()), [this](const HttpResponse& response) { OnCollection(response); }});
    steps.push_back({put, [this](const HttpResponse& response) {
                         Note("accepts uploads", YesOrNo(response.HasSucceeded()));
                         if (!response.HasSucceeded()) {
                             steps.clear(); // without a file nothing more can be found out
                         }
                     }});
    steps.push_back(
        {IfNew(put), [this](const HttpResponse& response) { Note("honours If-None-Match", Refusal(response)); }});
    steps.push_back({IfMatch(put, unknownTag),
                     [this](const HttpResponse& response) { Note("honours If-Match", Refusal(response)); }});
    steps.push_back({PropFind(firstUrl), [this](const HttpResponse& response) { OnFile(response); }});
    steps.push_back({FromPosition(Get(firstUrl), 2), [this](const HttpResponse& response) {
                         const bool isRest = response.Status() == 206 && response.body == content.mid(2);
                         Note("range requests", YesOrNo(isRest));
                         Note("ETag with the content", YesOrNo(EntityTag{response.head.Field("etag")}.IsValid()));
                     }});
    steps.push_back({move, [this](const HttpResponse& response) { Note("MOVE", YesOrNo(response.HasSucceeded())); }});
    steps.push_back({StoreMd5(secondUrl, someMd5, unknownTag), [this](const HttpResponse& response) {
                         session->storesProperties = IsPropertyStored(response);
                         Note("custom properties", YesOrNo(*session->storesProperties));
                     }});
    steps.push_back({put, [](const HttpResponse&) {}});
    steps.push_back({move, [this](const HttpResponse& response) {
                         session->refusesToOverwrite = response.Status() == 412;
                         Note("honours Overwrite: F", Refusal(response));
                     }});
}

void ServerProbe::TakeNextStep()
{
    if (steps.empty()) {
        DeleteFiles([this, guard = lifetime.Watch()] {
            if (guard) {
                End(failure ? *failure : Reply{Success, capabilities, {}, false});
            }
        });
        return;
    }
    const Step step = std::move(steps.front());
    steps.pop_front();
    requests.Send(step.request, [this, onResponse = step.onResponse](HttpResponse&& response) {
        if (response.fault != HttpResponse::Fault::None || response.Status() == 401) {
            failure = session->FailureReplyTo(what, {}, response);
            steps.clear();
        } else {
            onResponse(response);
        }
        TakeNextStep();
    });
}

void ServerProbe::OnCollection(const HttpResponse& response)
{
    const auto entry = EntryOfDepth0(response, session->collection.Path());
    if (!entry) {
        failure = FailureReply(what, {}, "The server does not answer as a WebDAV server does", "Try again.");
        steps.clear();
        return;
    }
    Note("own file ids and checksums", YesOrNo(session->isNextcloudLike));
    Note("reports used storage", YesOrNo(entry->quotaUsed.value_or(-1) >= 0));
    Note("reports free storage", YesOrNo(entry->quotaAvailable.value_or(-1) >= 0));
}

void ServerProbe::OnFile(const HttpResponse& response)
{
    DavPath path = session->collection.Path();
    path.push_back(first);
    const auto entry = EntryOfDepth0(response, path);
    if (!entry) {
        Note("ETag in lists", "not known");
        return;
    }
    const EntityTag tag{entry->etag};
    Note("ETag in lists", !tag.IsValid() ? "no" : tag.IsStrong() ? "yes" : "yes, weak for a file just written");
    Note("creates previews", YesOrNo(entry->hasPreview.has_value()));
    Note("reports creation times", YesOrNo(entry->createdAt.isValid()));
}

void ServerProbe::Note(const QString& capability, const QString& finding)
{
    capabilities.append({capability, finding});
}

void ServerProbe::NoteReported(const QString& capability, const QByteArray& reported)
{
    const QString text = Tidied(session->secrets.Redact(QString::fromUtf8(reported))).left(maxFindingLength);
    const bool isPrivate = (!session->user.isEmpty() && text.contains(session->user, Qt::CaseInsensitive)) ||
                           text.contains(session->collection.Host(), Qt::CaseInsensitive);
    Note(capability, text.isEmpty() || isPrivate ? QStringLiteral("not reported") : text);
}

bool ServerProbe::GiveUp()
{
    requests.CancelAll();
    DeleteFiles({});
    return true;
}

void ServerProbe::DeleteFiles(const std::function<void()>& done)
{
    session->housekeeper.DeleteFile(first, false);
    session->housekeeper.DeleteFile(second, false, done);
}

} // namespace Norlis::Social
