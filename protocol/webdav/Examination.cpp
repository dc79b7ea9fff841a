#include "Examination.h"

#include <files/AtomicFile.h>
#include <protocol/dav/EntityTag.h>
#include <protocol/dav/ErrorBody.h>

namespace Norlis::Social {

namespace {

const auto what = QStringLiteral("The examination of the service");
const QByteArray content = "examined";
const QByteArray unknownTag = "\"norlis\"";
const QByteArray someMd5 = "d41d8cd98f00b204e9800998ecf8427e";
constexpr int longestFinding = 80; // characters of what a server says

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

Examination::Examination(const std::shared_ptr<WebDavServer>& server, Sweeper& sweeper, Finish finish)
    : Operation(server, std::move(finish)),
      sweeper(sweeper),
      first(Files::AtomicFile::NewTemporaryName().toUtf8()),
      second(Files::AtomicFile::NewTemporaryName().toUtf8())
{
}

void Examination::Start()
{
    Note("service", "WebDAV");
    Plan();
    TakeNextStep();
}

void Examination::Plan()
{
    const QByteArray firstUrl = server->collection.UrlOf(first);
    const QByteArray secondUrl = server->collection.UrlOf(second);
    HttpRequest put = Put(firstUrl);
    put.body = content;
    const HttpRequest move = OnLane(HttpRequest::Lane::Transfer, Move(firstUrl, secondUrl, false));
    steps.push_back({Options(server->collection.Url()), [this](const HttpResponse& response) {
                         NoteTold("software", response.head.Field("server"));
                         NoteTold("DAV classes", response.head.Field("dav"));
                     }});
    steps.push_back(
        {PropFind(server->collection.Url()), [this](const HttpResponse& response) { LearnOfCollection(response); }});
    steps.push_back({put, [this](const HttpResponse& response) {
                         Note("takes uploads", YesOrNo(response.HasSucceeded()));
                         if (!response.HasSucceeded()) {
                             steps.clear(); // without a file there is nothing more to be found out
                         }
                     }});
    steps.push_back(
        {IfNew(put), [this](const HttpResponse& response) { Note("honours If-None-Match", Refusal(response)); }});
    steps.push_back({IfMatch(put, unknownTag),
                     [this](const HttpResponse& response) { Note("honours If-Match", Refusal(response)); }});
    steps.push_back({PropFind(firstUrl), [this](const HttpResponse& response) { LearnOfFile(response); }});
    steps.push_back({FromPosition(Get(firstUrl), 2), [this](const HttpResponse& response) {
                         const bool isRest = response.Status() == 206 && response.body == content.mid(2);
                         Note("range requests", YesOrNo(isRest));
                         Note("ETag with the content", YesOrNo(EntityTag{response.head.Field("etag")}.IsValid()));
                     }});
    steps.push_back({move, [this](const HttpResponse& response) {
                         Note("MOVE", YesOrNo(response.HasSucceeded()));
                     }});
    steps.push_back({StoreMd5(secondUrl, someMd5, unknownTag), [this](const HttpResponse& response) {
                         server->keepsProperties = IsPropertyStored(response);
                         Note("custom properties", YesOrNo(*server->keepsProperties));
                     }});
    steps.push_back({put, [](const HttpResponse&) {}});
    steps.push_back({move, [this](const HttpResponse& response) {
                         server->refusesToOverwrite = response.Status() == 412;
                         Note("refuses to overwrite", Refusal(response));
                     }});
}

void Examination::TakeNextStep()
{
    if (steps.empty()) {
        RemoveFiles([this, alive = std::weak_ptr<bool>(life)] {
            if (!alive.expired()) {
                End(problem ? *problem : Reply{Success, traits, {}, false});
            }
        });
        return;
    }
    const Step step = std::move(steps.front());
    steps.pop_front();
    requests.Send(step.request, [this, learn = step.learn](HttpResponse&& response) {
        if (response.fault != HttpResponse::Fault::None || response.Status() == 401) {
            problem = server->Failure(what, {}, response);
            steps.clear();
        } else {
            learn(response);
        }
        TakeNextStep();
    });
}

void Examination::LearnOfCollection(const HttpResponse& response)
{
    const auto entry = EntryOfDepth0(response, server->collection.Path());
    if (!entry) {
        problem = Failed(what, {}, "The server does not answer like a WebDAV server", "Try again.");
        steps.clear();
        return;
    }
    Note("file ids and checksums of its own", YesOrNo(server->isFamily));
    Note("tells used storage", YesOrNo(entry->quotaUsed.value_or(-1) >= 0));
    Note("tells free storage", YesOrNo(entry->quotaAvailable.value_or(-1) >= 0));
}

void Examination::LearnOfFile(const HttpResponse& response)
{
    DavPath path = server->collection.Path();
    path.push_back(first);
    const auto entry = EntryOfDepth0(response, path);
    if (!entry) {
        Note("ETag in lists", "not known");
        return;
    }
    const EntityTag tag{entry->etag};
    Note("ETag in lists", !tag.IsValid() ? "no" : tag.IsStrong() ? "yes" : "yes, weak for a file just written");
    Note("makes pictures", YesOrNo(entry->hasPreview.has_value()));
    Note("tells when a file was made", YesOrNo(entry->createdAt.isValid()));
}

void Examination::Note(const QString& trait, const QString& finding)
{
    traits.append({trait, finding});
}

void Examination::NoteTold(const QString& trait, const QByteArray& told)
{
    const QString text = Tidied(server->secrets.Redact(QString::fromUtf8(told))).left(longestFinding);
    const bool isPrivate = (!server->user.isEmpty() && text.contains(server->user, Qt::CaseInsensitive)) ||
                           text.contains(server->collection.Host(), Qt::CaseInsensitive);
    Note(trait, text.isEmpty() || isPrivate ? QStringLiteral("not reported") : text);
}

bool Examination::GiveUp()
{
    requests.CancelAll();
    RemoveFiles({});
    return true;
}

void Examination::RemoveFiles(const std::function<void()>& done)
{
    sweeper.Remove(server->collection.UrlOf(first), false);
    sweeper.Remove(server->collection.UrlOf(second), false, done);
}

} // namespace Norlis::Social
