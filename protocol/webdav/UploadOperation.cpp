#include "UploadOperation.h"

#include <base/Utf8.h>
#include <files/AtomicFile.h>
#include <files/DocumentNames.h>
#include <protocol/dav/EntityTag.h>

#include <QFileInfo>

#include <limits>

namespace Norlis::Social {

namespace {

const auto what = QStringLiteral("Upload");

} // namespace

UploadOperation::UploadOperation(qint64 id, const Request::Upload& request,
                                 const std::shared_ptr<WebDavSession>& session, const Tools& tools, Finish finish)
    : Operation(session, std::move(finish)),
      id(id),
      request(request),
      tools(tools),
      source(std::make_shared<UploadSource>(request.localPath, tools.pool,
                                            [this](qint64 position) { ReportProgress(position); }))
{
}

UploadOperation::~UploadOperation()
{
    session->lookup.Forget(id);
}

void UploadOperation::Start()
{
    name = QFileInfo(request.localPath).fileName().toUtf8();
    const auto badName = request.document.isEmpty() ? Files::ValidateName(Name()) : std::nullopt;
    if (badName) {
        End(FailureReply(what, Name(), QStringLiteral("The name %1").arg(*badName), "Give the file another name."));
        return;
    }
    if (!source->Open()) {
        End(FailureReply(what, Name(),
                         QStringLiteral("%1 cannot be read: %2").arg(request.localPath, source->ErrorText()),
                         "Check that the file is there and that you may read it."));
        return;
    }
    ReportProgress(0);
    if (request.document.isEmpty()) {
        Put();
        return;
    }
    session->lookup.Find(id, request.document, what, [this](const DavDocument* document, Reply&& failure) {
        if (document) {
            name = document->name;
            LookAtReplaced();
        } else {
            failure.failure.document = Name();
            End(std::move(failure));
        }
    });
}

void UploadOperation::LookAtReplaced()
{
    // Also shows, before a large file is sent in vain, whether the server accepts requests.
    requests.Send(OnLane(HttpRequest::Lane::Transfer, PropFind(session->collection.UrlOf(name))),
                  [this](HttpResponse&& response) {
                      const auto entry = EntryOfDepth0(response, PathOf(name));
                      if (entry && !entry->isCollection) {
                          replaced = FileOf(*entry, name);
                          Put();
                      } else if (entry || IsMissing(response.Status())) {
                          End(FailureReply(what, Name(), "The document to replace is no longer in the cloud",
                                           "Upload the file as a new document."));
                      } else {
                          End(session->FailureReplyTo(what, Name(), response));
                      }
                  });
}

void UploadOperation::Put()
{
    step = Step::Sending;
    isDirect = replaced && session->isNextcloudLike;
    sent.name = isDirect ? name : Files::AtomicFile::NewTemporaryName().toUtf8();
    HttpRequest put = Social::Put(session->collection.UrlOf(sent.name), request.mimeType.toLatin1());
    if (session->isNextcloudLike) {
        put = WithChecksum(put, request.md5Hash.toLower().toLatin1());
    }
    if (isDirect && EntityTag{replaced->etag}.IsStrong()) {
        put = IfMatch(put, replaced->etag);
    }
    put.source = source;
    put.isRepeatable = !isDirect;
    requests.Send(OnLane(HttpRequest::Lane::Transfer, put), [this](HttpResponse&& response) { OnPut(response); });
}

void UploadOperation::OnPut(const HttpResponse& response)
{
    if (response.fault == HttpResponse::Fault::SourceFailed) {
        Fail(FailureReply(what, Name(), QStringLiteral("%1 has changed in the meantime").arg(request.localPath),
                          "Try again."),
             true);
        return;
    }
    // A version that does not match may be our own: a request whose kept connection turns out to be closed is sent a
    // second time.
    const bool isLost = isDirect && (response.fault != HttpResponse::Fault::None || response.Status() == 412);
    if (!response.HasSucceeded() && !isLost) {
        Fail(session->FailureReplyTo(what, Name(), response), response.fault != HttpResponse::Fault::None);
        return;
    }
    const QByteArray arrivedMd5 = response.head.Field("x-hash-md5").toLower();
    const QString ownMd5 = source->IsWholeAndUnchanged() ? source->Md5() : QString();
    const QString expectedMd5 = request.md5Hash.toLower();
    if (!isLost && (ownMd5.isEmpty() || (!expectedMd5.isEmpty() && ownMd5 != expectedMd5))) {
        Fail(FailureReply(what, Name(), QStringLiteral("%1 has changed in the meantime").arg(request.localPath),
                          "Try again."));
    } else if (!arrivedMd5.isEmpty() && arrivedMd5 != ownMd5.toLatin1()) {
        Fail(FailureReply(what, Name(), "The server received other bytes than were sent", "Try again."));
    } else {
        sent.md5 = ownMd5.toLatin1();
        CheckWhatArrived(response);
    }
}

void UploadOperation::CheckWhatArrived(const HttpResponse& putResponse)
{
    step = Step::Checking;
    requests.Send(OnLane(HttpRequest::Lane::Transfer, PropFind(session->collection.UrlOf(sent.name))),
                  [this, putResponse](HttpResponse&& propFindResponse) {
                      const auto entry = EntryOfDepth0(propFindResponse, PathOf(sent.name));
                      if (entry) {
                          OnEntry(*entry, putResponse);
                      } else {
                          Fail(session->FailureReplyTo(what, Name(),
                                                       putResponse.HasSucceeded() ? propFindResponse : putResponse));
                      }
                  });
}

void UploadOperation::OnEntry(const DavEntry& entry, const HttpResponse& putResponse)
{
    const QByteArray md5 = sent.md5;
    const bool isWhole = entry.size == source->Size() && (entry.md5.isEmpty() || md5.isEmpty() || entry.md5 == md5);
    const bool isOurs = putResponse.HasSucceeded() ||
                        (isWhole && !entry.md5.isEmpty() && entry.md5 == request.md5Hash.toLower().toLatin1());
    if (!isOurs) {
        End(session->FailureReplyTo(what, Name(), putResponse));
        return;
    }
    if (!isWhole) {
        Fail(FailureReply(
            what, Name(),
            QStringLiteral("The server kept %1 of %2 bytes").arg(entry.size.value_or(0)).arg(source->Size()),
            "Check that there is room in the cloud, and try again."));
        return;
    }
    sent = FileOf(entry, sent.name);
    sent.md5 = md5.isEmpty() ? entry.md5 : md5;
    if (isDirect) {
        OnPublished({name, {}, {}, false});
    } else {
        Publish();
    }
}

void UploadOperation::Publish()
{
    if (isGivenUp) {
        Fail({});
        return;
    }
    step = Step::Publishing;
    publication = std::make_unique<Publication>(*session, sent,
                                                [this](const Publication::Outcome& outcome) { OnPublished(outcome); });
    if (replaced) {
        publication->Replace(name);
    } else {
        publication->MakeNew(name);
    }
}

void UploadOperation::OnPublished(const Publication::Outcome& outcome)
{
    if (outcome.failure) {
        Reply failure = session->FailureReplyTo(what, Name(), *outcome.failure);
        if (outcome.isOnlyCopy && !outcome.leftover.isEmpty()) {
            failure.failure.advice =
                QStringLiteral("The server has lost the old document. What was sent is there as %1.")
                    .arg(QString::fromUtf8(outcome.leftover));
            End(std::move(failure));
            return;
        }
        sent.name = outcome.leftover.isEmpty() ? sent.name : outcome.leftover;
        Fail(std::move(failure));
        return;
    }
    DavDocument made = sent;
    made.name = outcome.name;
    if (replaced) {
        made.id = replaced->id;
    } else if (made.id == Files::IdOfName(sent.Name())) {
        made.id = Files::IdOfName(made.Name());
    }
    session->documents.insert(made.id, made);
    tools.published(made);
    const bool isWanted = request.token->Commit([&] { return replaced ? QString() : made.id; });
    if (!isWanted && !replaced) {
        // Cancelled at the last moment: the new document is deleted.
        session->documents.remove(made.id);
        session->housekeeper.DeleteFile(made.name, false, [this] { End({}); });
        return;
    }
    Succeed(made);
}

void UploadOperation::Succeed(const DavDocument& made)
{
    session->housekeeper.StoreHash(made);
    const CloudFile entry = made.ToCloudFile();
    NorlisCloudSharingResult result;
    result.id = made.id;
    result.fileName = entry.name;
    result.downloadUrl = QUrl::fromEncoded(session->collection.UrlOf(made.name));
    result.createdAt = made.createdAt.isValid() ? made.createdAt : made.modifiedAt;
    result.modifiedAt = made.modifiedAt;
    result.lifetime = std::numeric_limits<int>::max();
    tools.progress(100);
    End({Success, result, {}, false});
}

bool UploadOperation::GiveUp()
{
    isGivenUp = true;
    if (step == Step::Preparing) {
        return true;
    }
    if (step == Step::Publishing) {
        return false; // only its outcome shows what there is to undo
    }
    requests.CancelAll();
    if (isDirect) {
        return true; // the server discards it, or has it
    }
    session->housekeeper.DeleteFile(sent.name, step == Step::Sending);
    return true;
}

void UploadOperation::Fail(Reply reply, bool mayBeWritten)
{
    if (isDirect) {
        End(std::move(reply));
        return;
    }
    session->housekeeper.DeleteFile(sent.name, mayBeWritten,
                                    [this, reply = std::move(reply), guard = lifetime.Watch()] {
                                        if (guard) {
                                            End(reply);
                                        }
                                    });
}

void UploadOperation::ReportProgress(qint64 position)
{
    const qint64 size = qMax<qint64>(source->Size(), 1);
    const int percent = static_cast<int>(qMin<qint64>(position * 100 / size, 99)); // the server has not answered yet
    if (percent > reportedPercent) {
        reportedPercent = percent;
        tools.progress(percent);
    }
}

QString UploadOperation::Name() const
{
    return FromUtf8(name);
}

DavPath UploadOperation::PathOf(const QByteArray& document) const
{
    DavPath path = session->collection.Path();
    path.push_back(document);
    return path;
}

} // namespace Norlis::Social
