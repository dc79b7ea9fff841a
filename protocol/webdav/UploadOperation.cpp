#include "UploadOperation.h"

#include <base/Utf8.h>
#include <files/AtomicFile.h>
#include <files/DocumentNames.h>
#include <protocol/dav/EntityTag.h>

#include <QFileInfo>

#include <limits>
#include <utility>

namespace Norlis::Social {

namespace {

const auto what = QStringLiteral("Upload");
constexpr qint64 smallSize = 1024 * 1024; // bytes

} // namespace

UploadOperation::UploadOperation(qint64 id, const Request::Upload& request,
                                 const std::shared_ptr<WebDavSession>& session, const Tools& tools, Finish finish)
    : Operation(session, std::move(finish)),
      id(id),
      request(request),
      tools(tools),
      files(*session),
      source(std::make_shared<UploadSource>(request.localPath, tools.pool,
                                            [this](qint64 position) { ReportProgress(position); }))
{
}

UploadOperation::~UploadOperation()
{
    // A document that was to be replaced may be gone by now, and the file all that there is of it.
    const bool mayBeAllThereIs = step == Step::Publishing && replaced;
    if (IsUnderWay() && !isDirect && !sent.name.isEmpty() && !mayBeAllThereIs) {
        session->housekeeper.LeaveForNextTime(sent.name);
    }
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
    if (source->Size() <= smallSize) { // it will be there in no time
        announcement.emplace(session->looks);
    }
    ReportProgress(0);
    if (request.document.isEmpty()) {
        Put();
        return;
    }
    session->lookup.Find(id, request.document, what, [this](const DavDocument* document, Reply&& failure) {
        if (document) {
            name = document->name;
            const auto copy = session->versions.Find(request.document, request.localPath);
            if (copy || document->wasShown) {
                LookAtReplaced(copy ? copy->version : document->Version());
            } else {
                End(ConflictReply(what, *document));
            }
        } else {
            failure.failure.document = Name();
            End(std::move(failure));
        }
    });
}

void UploadOperation::LookAtReplaced(const QString& expectedVersion)
{
    // Also shows, before a large file is sent in vain, whether the server accepts requests.
    requests.Send(OnLane(HttpRequest::Lane::Transfer, PropFind(session->collection.UrlOf(name))),
                  [this, expectedVersion](HttpResponse&& response) {
                      const auto entry = EntryOfDepth0(response, session->PathOf(name));
                      if (entry && !entry->isCollection) {
                          replaced = FileOf(*entry, name);
                          if (replaced->IsVersion(expectedVersion)) {
                              Put();
                          } else {
                              End(ConflictReply(what, *replaced));
                          }
                      } else if (entry || IsMissing(response.Status())) {
                          End(FailureReply(what, Name(), "The document to replace is no longer in the cloud",
                                           "Upload the file as a new document.", OAuth2::FailureKind::Conflict));
                      } else {
                          End(session->FailureReplyTo(what, Name(), response));
                      }
                  });
}

void UploadOperation::Put()
{
    step = Step::Sending;
    // Only with a tag that the server compares is that safe.
    isDirect = replaced && session->isNextcloudLike && EntityTag{replaced->etag}.IsStrong();
    if (isDirect) {
        sent.name = name;
    } else if (sent.name.isEmpty()) {
        sent.name = session->NewTemporaryName();
    }
    HttpRequest put = Social::Put(session->collection.UrlOf(sent.name), request.mimeType.toLatin1());
    if (session->isNextcloudLike) {
        put = WithChecksum(put, request.md5Hash.toLower().toLatin1());
    }
    if (isDirect) {
        put = IfMatch(put, replaced->etag);
    }
    put.source = source;
    put.isRepeatable = !isDirect;
    requests.Send(OnLane(HttpRequest::Lane::Transfer, put),
                  [this](HttpResponse&& response) { OnPut(JudgeChange(response)); });
}

bool UploadOperation::PutDifferently(const ChangeResult& result)
{
    const bool isHidden = sent.name.startsWith('.');
    const bool mayBeTheName = result.response.Status() == 403 || IsMissing(result.response.Status());
    if (!isDirect && isHidden && mayBeTheName && !session->takesHiddenNames) {
        sent.name = Files::AtomicFile::NewTemporaryName(false).toUtf8();
        Put();
        return true;
    }
    if (!isDirect && result.IsDone()) {
        session->takesHiddenNames = isHidden;
    }
    return false;
}

void UploadOperation::OnPut(const ChangeResult& result)
{
    const HttpResponse& response = result.response;
    if (response.fault == HttpResponse::Fault::SourceFailed) {
        FailAsChanged(true);
        return;
    }
    if (PutDifferently(result)) {
        return;
    }
    // A version that does not match may be our own: a request whose kept connection turns out to be closed is sent a
    // second time.
    const bool isUnclear = result.outcome == ChangeResult::Outcome::Unclear;
    const bool isLost = isDirect && (isUnclear || response.Status() == 412);
    if (isLost) {
        LookAtDirect(result);
        return;
    }
    // A server that takes long to answer may have all of it.
    const bool mayBeThere = response.fault == HttpResponse::Fault::Silent && source->IsWholeAndUnchanged();
    if (mayBeThere) {
        lost = response;
    } else if (!result.IsDone()) {
        Fail(session->FailureReplyTo(what, Name(), response), response.fault != HttpResponse::Fault::None);
        return;
    }
    if (!source->IsWhole()) {
        Fail(FailureReply(what, Name(), "The server answered before it had the whole file",
                          "Try again. If this happens again, tell whoever runs the server."));
        return;
    }
    const QByteArray arrivedMd5 = response.head.Field("x-hash-md5").toLower();
    const QString ownMd5 = source->IsWholeAndUnchanged() ? source->Md5() : QString();
    const QString expectedMd5 = request.md5Hash.toLower();
    if (ownMd5.isEmpty() || (!expectedMd5.isEmpty() && ownMd5 != expectedMd5)) {
        FailAsChanged(false);
        return;
    }
    if (!arrivedMd5.isEmpty() && arrivedMd5 != ownMd5.toLatin1()) {
        Fail(FailureReply(what, Name(), "The server received other bytes than were sent", "Try again."));
        return;
    }
    sent.size = source->Size();
    sent.md5 = ownMd5.toLatin1();
    isProven = !arrivedMd5.isEmpty();
    if (isDirect) {
        LookAtDirect(result);
    } else if (isProven) {
        sent.etag = response.head.Field("etag");
        Publish();
    } else {
        Compare([this] { Publish(); });
    }
}

void UploadOperation::Compare(const std::function<void()>& whenSame)
{
    step = Step::Checking;
    readBack = std::make_unique<ReadBack>(*session, source->Sent());
    readBack->Compare(sent.name, [this, whenSame](const ReadBack::Result& result) {
        if (result.failure && lost && IsMissing(result.failure->Status())) {
            Fail(session->FailureReplyTo(what, Name(), *lost), true);
        } else if (result.failure) {
            Fail(session->FailureReplyTo(what, Name(), *result.failure));
        } else if (!result.difference.isEmpty()) {
            Fail(
                FailureReply(what, Name(), result.difference, "Check that there is room in the cloud, and try again."));
        } else {
            sent.etag = result.etag;
            whenSame();
        }
    });
}

void UploadOperation::LookAtDirect(const ChangeResult& put)
{
    step = Step::Checking;
    files.Look(sent.name, [this, put](const HttpResponse& response, const std::optional<DavEntry>& entry) {
        if (entry) {
            OnDirectEntry(*entry, put);
        } else {
            Fail(session->FailureReplyTo(what, Name(), put.IsDone() ? response : put.response));
        }
    });
}

void UploadOperation::OnDirectEntry(const DavEntry& entry, const ChangeResult& put)
{
    // Of a lost response only the hash that was sent along shows whether this is what was sent.
    const QByteArray md5 = put.IsDone() ? sent.md5 : request.md5Hash.toLower().toLatin1();
    const bool isHashed = !md5.isEmpty() && entry.md5 == md5;
    const bool isWhole = entry.size == source->Size() && (entry.md5.isEmpty() || isHashed);
    DavDocument made = FileOf(entry, sent.name);
    made.id = replaced->id;
    made.md5 = md5;
    if (!put.IsDone() && !(isWhole && isHashed)) {
        Fail(session->FailureReplyTo(what, Name(), put.response));
    } else if (!isWhole) {
        Fail(FailureReply(
            what, Name(),
            QStringLiteral("The server kept %1 of %2 bytes").arg(entry.size.value_or(0)).arg(source->Size()),
            "Check that there is room in the cloud, and try again."));
    } else if (isProven || !put.IsDone()) {
        OnPublished({made, {}, {}});
    } else {
        Compare([this, made] { OnPublished({made, {}, {}}); });
    }
}

void UploadOperation::Publish()
{
    if (isGivenUp) {
        Fail({});
        return;
    }
    step = Step::Publishing;
    const auto onRenamed = [this] {
        announcement.reset();
        tools.settling();
    };
    publication = std::make_unique<Publication>(*session, sent, source->Sent(), onRenamed,
                                                [this](const Publication::Outcome& outcome) { OnPublished(outcome); });
    if (replaced) {
        publication->Replace(*replaced);
    } else {
        publication->MakeNew(name);
    }
}

void UploadOperation::OnPublished(const Publication::Outcome& outcome)
{
    if (outcome.failure) {
        if (outcome.leftover.isEmpty()) {
            End(*outcome.failure);
        } else {
            sent.name = outcome.leftover;
            Fail(*outcome.failure);
        }
        return;
    }
    const DavDocument made = outcome.made; // the outcome's may not live as long
    session->documents.insert(made.id, made);
    session->journal.NoteUpload(made.id);
    session->versions.Remember(made.id, request.localPath, {made.Version(), QString::fromLatin1(made.md5)});
    tools.published(made);
    const bool isWanted = request.token->Commit([&] { return replaced ? QString() : made.id; });
    if (!isWanted && !replaced) {
        // Cancelled at the last moment: the new document is removed, unless somebody has replaced it already.
        undoing = std::make_unique<RemoveOperation>(id, made.id, session, [this](Reply&&) { End({}); });
        undoing->Start();
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
    const auto file = TransferredFileOf(request.localPath, source->Md5(), source->Version(), source->IsLasting());
    End({Success, result, {}, false, false, file});
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
    readBack.reset();
    if (isDirect) {
        return true; // the server discards it, or has it
    }
    session->housekeeper.DeleteFile(std::exchange(sent.name, {}), step == Step::Sending);
    return true;
}

void UploadOperation::Fail(Reply reply, bool mayBeWritten)
{
    if (isDirect) {
        End(std::move(reply));
        return;
    }
    session->housekeeper.DeleteFile(std::exchange(sent.name, {}), mayBeWritten,
                                    [this, reply = std::move(reply), guard = lifetime.Watch()] {
                                        if (guard) {
                                            End(reply);
                                        }
                                    });
}

void UploadOperation::FailAsChanged(bool mayBeWritten)
{
    Fail(FailureReply(what, Name(), QStringLiteral("%1 has changed in the meantime").arg(request.localPath),
                      "Try again."),
         mayBeWritten);
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

} // namespace Norlis::Social
