#pragma once

#include <protocol/http/HttpRequestGroup.h>

#include <QObject>
#include <QSet>

namespace Norlis::Social {

struct DavDocument;
struct WebDavSession;

/// What remains to be done on the server after transfers: deleting temporary files, giving back locks and storing
/// hashes. It continues after they have ended.
class Housekeeper : public QObject {
public:
    explicit Housekeeper(WebDavSession& session);

    /// What has not been deleted yet is left for the next time.
    ~Housekeeper() override;

    /// Deletes a file of ours, then calls done, whatever became of it. When the server may still be writing the file,
    /// it is deleted once more a little later.
    /// \param name that nobody else gives to a file
    void DeleteFile(const QByteArray& name, bool mayBeWritten, std::function<void()> done = {});

    /// Notes a file of ours that nobody has the time to delete: the next sign-in does it.
    /// \param name as above
    void LeaveForNextTime(const QByteArray& name);

    /// Deletes what was left so, by this program or another one with the same data folder.
    void DeleteLeftovers();

    /// Gives back a lock that is no longer needed.
    /// \param token with its angle brackets
    void ReleaseLock(const QByteArray& url, const QByteArray& token);

    /// The same after the document was removed. Its locks should have gone with it (RFC 4918, 9.6): nothing is sent to
    /// a server that has been seen to do so.
    void ReleaseLockOfRemoved(const QByteArray& url, const QByteArray& token);

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

    void OnDeleted(const QByteArray& name, const HttpResponse& response);

    WebDavSession& session;
    HttpRequestGroup requests;
    QSet<QByteArray> undeleted; ///< names of files that are being deleted
    QSet<QByteArray> leftovers; ///< those of them that were left by a former time
    int tasks = 0;              ///< under way
};

} // namespace Norlis::Social
