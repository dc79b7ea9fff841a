#include "ServerProbe.h"

#include <protocol/dav/EntityTag.h>
#include <protocol/dav/ErrorBody.h>

#include <QCryptographicHash>

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
    const ChangeResult result = JudgeChange(response);
    if (result.response.Status() == 412) {
        return QStringLiteral("yes");
    }
    return result.IsDone() ? QStringLiteral("no") : QStringLiteral("not known");
}

} // namespace

ServerProbe::ServerProbe(const std::shared_ptr<WebDavSession>& session, Finish finish)
    : Operation(session, std::move(finish)),
      files(*session),
      first(session->NewTemporaryName()),
      second(session->NewTemporaryName())
{
}

void ServerProbe::Start()
{
    Note("service", "WebDAV");
    PlanLooks();
    PlanFirstFile();
    PlanSecondFile();
    TakeNextStep();
}

ServerProbe::Step ServerProbe::Exchange(const HttpRequest& request, OnResponse onResponse)
{
    return {[this, request](const OnResponse& done) {
                requests.Send(request, [done](HttpResponse&& response) { done(response); });
            },
            std::move(onResponse)};
}

ServerProbe::Step ServerProbe::Rename(OnResponse onResponse)
{
    return {[this](const OnResponse& done) {
                files.Move(first, second, false, {}, [done](const ChangeResult& result) { done(result.response); });
            },
            std::move(onResponse)};
}

void ServerProbe::PlanLooks()
{
    steps.push_back(Exchange(Options(session->collection.Url()), [this](const HttpResponse& response) {
        NoteReported("software", response.head.Field("server"));
        NoteReported("DAV classes", response.head.Field("dav"));
    }));
    steps.push_back(Exchange(PropFind(session->collection.Url()),
                             [this](const HttpResponse& response) { OnCollection(response); }));
}

HttpRequest ServerProbe::PutFirst(const QByteArray& body) const
{
    HttpRequest put = Put(session->collection.UrlOf(first));
    put.body = body;
    return put;
}

void ServerProbe::PlanFirstFile()
{
    const QByteArray url = session->collection.UrlOf(first);
    const HttpRequest put = PutFirst(content);
    steps.push_back(Exchange(session->isNextcloudLike ? WithChecksum(put, {}) : put,
                             [this](const HttpResponse& response) { OnUploaded(response); }));
    steps.push_back(Exchange(
        IfNew(put), [this](const HttpResponse& response) { Note("honours If-None-Match", Refusal(response)); }));
    steps.push_back(Exchange(IfMatch(put, unknownTag),
                             [this](const HttpResponse& response) { Note("honours If-Match", Refusal(response)); }));
    steps.push_back(Exchange(PropFind(url), [this](const HttpResponse& response) { OnFile(response); }));
    steps.push_back(Exchange(FromPosition(Get(url), 2), [this](const HttpResponse& response) {
        const bool isRest = response.Status() == 206 && response.body == content.mid(2);
        Note("range requests", YesOrNo(isRest));
        Note("ETag with the content", YesOrNo(EntityTag{response.head.Field("etag")}.IsValid()));
    }));
}

void ServerProbe::PlanSecondFile()
{
    const QByteArray url = session->collection.UrlOf(second);
    steps.push_back(Rename([this](const HttpResponse& response) { moveStatus = response.Status(); }));
    steps.push_back(Exchange(StoreMd5(url, someMd5, unknownTag), [](const HttpResponse&) {}));
    steps.push_back(Exchange(PropFind(url), [this](const HttpResponse& response) { OnRenamed(response); }));
    steps.push_back(Exchange(PutFirst(content + content), [](const HttpResponse&) {}));
    steps.push_back(Rename([this](const HttpResponse& response) {
        session->refusesToOverwrite = response.Status() == 412;
        Note("honours Overwrite: F", Refusal(response));
    }));
    steps.push_back(Exchange(Lock(url), [this, url](const HttpResponse& response) {
        const QByteArray token = LockTokenOf(response);
        session->hasLocks = !token.isEmpty();
        if (token.isEmpty()) {
            // Without them two who replace a document at the very same moment cannot always be told apart.
            Note("locks", "no");
            return;
        }
        HttpRequest write = Put(url);
        write.body = content;
        write.isRepeatable = false; // what is locked is not busy
        steps.push_front(Exchange(Unlock(url, token), [](const HttpResponse&) {}));
        steps.push_front(Exchange(write, [this](const HttpResponse& answer) {
            Note("locks", JudgeChange(answer).IsDone() ? "yes, but not for programs that use none" : "yes");
        }));
    }));
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
    step.send([this, onResponse = step.onResponse](const HttpResponse& response) {
        if (response.fault != HttpResponse::Fault::None || response.Status() == 401) {
            failure = session->FailureReplyTo(what, {}, response);
            steps.clear();
        } else {
            onResponse(response);
        }
        TakeNextStep();
    });
}

void ServerProbe::OnUploaded(const HttpResponse& response)
{
    const ChangeResult result = JudgeChange(response);
    const bool isHidden = first.startsWith('.');
    if (result.outcome == ChangeResult::Outcome::Refused && isHidden && !session->takesHiddenNames) {
        first.remove(0, 1);
        second.remove(0, 1);
        steps.clear();
        PlanFirstFile();
        PlanSecondFile();
        return;
    }
    if (!result.IsDone()) {
        Note("accepts uploads", "no");
        steps.clear(); // without a file nothing more can be found out
        return;
    }
    session->takesHiddenNames = isHidden;
    Note("accepts uploads", isHidden ? "yes" : "yes, but no names with a leading dot");
    const QByteArray md5 = QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex();
    Note("proof of uploads", response.head.Field("x-hash-md5").toLower() == md5 ? "the server's hash" : "reading back");
}

void ServerProbe::OnRenamed(const HttpResponse& response)
{
    const auto entry = EntryOfDepth0(response, session->PathOf(second));
    const bool isRenamed = entry && entry->size.value_or(content.size()) == content.size();
    const DestinationForm form = session->destinationForm.value_or(DestinationForm::Url);
    QString finding = YesOrNo(isRenamed);
    if (isRenamed && form != DestinationForm::Url) {
        finding = form == DestinationForm::Path ? "yes, with only a path as the destination"
                                                : "yes, with http: in the destination";
    } else if (!isRenamed && !session->destinationForm) {
        finding = QStringLiteral("no (%1): perhaps a proxy has to rewrite Destination").arg(moveStatus);
    }
    Note("MOVE", finding);
    session->storesProperties = entry && entry->storedMd5 == someMd5 && entry->storedEtag == unknownTag;
    Note("custom properties", YesOrNo(*session->storesProperties));
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
    const auto entry = EntryOfDepth0(response, session->PathOf(first));
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
