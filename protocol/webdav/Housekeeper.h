#pragma once

#include <protocol/http/HttpRequestGroup.h>

#include <QObject>

namespace Norlis::Social {

struct DavDocument;
struct WebDavSession;

/// What remains to be done on the server after transfers: deleting temporary files, giving back
/// locks and storing hashes. It continues
/// after they have ended.
class Housekeeper : public QObject {
public:
    explicit Housekeeper(WebDavSession& session);

    /// Deletes a file of ours, then calls done, whatever became of it. When the server may still be writing the file,
    /// it is deleted once more a little later.
    /// \param name that nobody else gives to a file
    void DeleteFile(const QByteArray& name, bool mayBeWritten, std::function<void()> done = {});

    /// Gives back a lock that is no longer needed.
    /// \param token with its angle brackets
    void ReleaseLock(const QByteArray& url, const QByteArray& token);

    /// Stores the hash of an uploaded document, for the lists of later sign-ins and other machines. Nothing happens
    /// where the server does not store such properties, or the version has no ETag. Not part of the upload, since some
    /// servers take longer for it than for the document.
    void StoreHash(const DavDocument& document);

    bool IsIdle() const
    {
        return tasks == 0;
    }

private:
    /// Whether the first hash comes back: some servers only say that they store it.
    void LookForHash(const DavDocument& document);

    WebDavSession& session;
    HttpRequestGroup requests;
    int tasks = 0; ///< under way
};

} // namespace Norlis::Social
