#pragma once

#include "DocumentLock.h"
#include "FileRequests.h"
#include "Listing.h"
#include "Operation.h"

namespace Norlis::Social {

/// The list of all documents. Temporary files that it shows, which interrupted uploads left behind, are deleted.
class ListOperation : public Operation {
public:
    using Operation::Operation;
    void Start() override;

private:
    std::unique_ptr<Listing> listing;
};

/// A request about one document, which is looked up first.
class DocumentOperation : public Operation {
public:
    DocumentOperation(qint64 id, const QString& document, const QString& what,
                      const std::shared_ptr<WebDavSession>& session, Finish finish);
    ~DocumentOperation() override;
    void Start() override;

protected:
    virtual void OnFound(const DavDocument& document) = 0;

    /// Ends with the failure of an exchange about the document.
    void Fail(const DavDocument& document, const HttpResponse& response);

    const QString what; ///< for error texts

private:
    const qint64 id;
    const QString document;
};

/// The entry of one document as it is now.
class InfoOperation : public DocumentOperation {
public:
    InfoOperation(qint64 id, const QString& document, const std::shared_ptr<WebDavSession>& session, Finish finish);

protected:
    void OnFound(const DavDocument& document) override;
};

/// Removes the version that was listed: one that nobody has seen is a conflict.
class RemoveOperation : public DocumentOperation {
public:
    RemoveOperation(qint64 id, const QString& document, const std::shared_ptr<WebDavSession>& session, Finish finish);

    /// What has begun is completed: it may be the one that undoes a cancelled upload.
    bool GiveUp() override;

protected:
    void OnFound(const DavDocument& document) override;

private:
    void LockAndLook(const DavDocument& known);
    void LookAtVersion(const DavDocument& known);
    void SendDelete(const DavDocument& known, const DavEntry& entry);
    void LookWhetherGone(const DavDocument& known, const ChangeResult& result);

    /// Whether it may come to another end the next time.
    bool MayTryAgain(const HttpResponse& response) const;
    void Succeed(const DavDocument& removed);

    FileRequests files;
    std::unique_ptr<DocumentLock> lock;
    std::optional<GroupedLooks::Announcement> announcement;
    int attempts = 0;
    bool isUnderWay = false;
    Lifetime lifetime; ///< a look that others wait for goes on
};

/// Storage used and available, as far as the server reports it (RFC 4331).
class QuotaOperation : public Operation {
public:
    using Operation::Operation;
    void Start() override;
};

} // namespace Norlis::Social
