#pragma once

#include "Directory.h"
#include "Operation.h"

namespace Norlis::Social {

/// The list of all documents.
class ListOperation : public Operation {
public:
    using OnLeftovers = std::function<void(const QList<QByteArray>& names)>;

    ListOperation(const std::shared_ptr<WebDavServer>& server, OnLeftovers onLeftovers, Finish finish);
    void Start() override;

private:
    const OnLeftovers onLeftovers;
    std::unique_ptr<Listing> listing;
};

/// Something that is done with one document, once it is found.
class DocumentOperation : public Operation {
public:
    DocumentOperation(qint64 id, const QString& document, const QString& what, Directory& directory,
                      const std::shared_ptr<WebDavServer>& server, Finish finish);
    ~DocumentOperation() override;
    void Start() override;

protected:
    virtual void Work(const DavDocument& document) = 0;

    /// Ends with the failure of an exchange about the document.
    void Fail(const DavDocument& document, const HttpResponse& response);

    const QString what; ///< for error texts

private:
    const qint64 id;
    const QString document;
    Directory& directory;
};

/// The entry of one document as it is now.
class InfoOperation : public DocumentOperation {
public:
    InfoOperation(qint64 id, const QString& document, Directory& directory, const std::shared_ptr<WebDavServer>& server,
                  Finish finish);

protected:
    void Work(const DavDocument& document) override;
};

class RemoveOperation : public DocumentOperation {
public:
    RemoveOperation(qint64 id, const QString& document, Directory& directory,
                    const std::shared_ptr<WebDavServer>& server, Finish finish);

    /// What has been asked for is seen to its end: it may be what takes a cancelled upload back.
    bool GiveUp() override;

protected:
    void Work(const DavDocument& document) override;

private:
    bool isAskedFor = false;
};

/// Storage used and available, as far as the server tells (RFC 4331).
class QuotaOperation : public Operation {
public:
    using Operation::Operation;
    void Start() override;
};

} // namespace Norlis::Social
