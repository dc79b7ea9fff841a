#pragma once

#include "DocumentLock.h"
#include "OverwriteCheck.h"
#include "ReadBack.h"
#include <protocol/service/Reply.h>

#include <QObject>

namespace Norlis::Social {

/// Gives an uploaded file its final name, in one step, so that a new document never takes another one's place. Whatever
/// the server answers, a look under that name shows whether it is there.
class Publication : public QObject {
public:
    struct Outcome {
        DavDocument made; ///< as it was seen under its name
        std::optional<Reply> failure;
        QByteArray leftover; ///< of a failure: name of the uploaded file, to be deleted; empty when it is gone or kept
    };
    using Done = std::function<void(Outcome)>;

    /// \param uploaded  the file, under its temporary name
    /// \param sent      what it consists of
    /// \param onRenamed called when only the look is left, which waits for those of others
    Publication(WebDavSession& session, const DavDocument& uploaded, const SentContent& sent,
                std::function<void()> onRenamed, Done done);
    ~Publication() override;

    /// As a new document of this name, or of the next free one with a number.
    void MakeNew(const QByteArray& name);

    /// Unless it is no longer the version that it was.
    /// \param replaced the document as it was before
    void Replace(const DavDocument& replaced);

private:
    void LockReplaced();
    void OnLocked(DocumentLock::Outcome outcome);
    void LookAtReplaced();
    void LockUploaded();
    void GoOnWithoutLocks();
    void Try(const QByteArray& newName);
    void TryNextName();
    void Move();
    void MoveAgain();
    void OnMoved(const ChangeResult& result);
    void LookWhetherNameIsTaken();

    /// The name is another document's, or another version's, unless it is what was sent before, when nobody could see
    /// what became of it.
    void OnTaken(const DavEntry& entry);

    /// To somebody else's document or version.
    void GiveWay();
    void LookAtTarget();
    void Compare(const DavEntry& entry);
    void FailUnconfirmed(const HttpResponse& response);
    void OnOtherTarget(bool isThere);
    bool IsUploadedVersion(const DavEntry& entry) const;
    void Succeed(const DavEntry& entry);

    /// \param isUploadedThere under its temporary name
    void FailAsAnswered(bool isUploadedThere);
    void Fail(Reply failure, const QByteArray& leftover = {});
    Reply Failure(const QString& reason, const QString& advice) const;

    WebDavSession& session;
    DavDocument uploaded;
    const SentContent sent;
    std::function<void()> onRenamed;
    Done done;
    FileRequests files;
    ReadBack readBack;
    std::unique_ptr<OverwriteCheck> check;
    std::unique_ptr<DocumentLock> lock;         ///< of the document that is replaced
    std::unique_ptr<DocumentLock> uploadedLock; ///< of the uploaded file, for servers that want it
    QByteArray wantedName;
    QByteArray name;                     ///< the one that is being tried
    bool isReserved = false;             ///< this publication has put it among the reserved names
    std::optional<DavDocument> replaced; ///< nothing for a new document
    bool mayOverwrite = false;
    ChangeResult moved; ///< the last MOVE
    int number = 1;
    int attempts = 0;
    bool isRepeated = false; ///< an attempt came to nothing, as far as could be seen
    Lifetime lifetime;       ///< a look that others wait for goes on
};

} // namespace Norlis::Social
