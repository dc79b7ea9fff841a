#pragma once

#include <NorlisTestKit/FaultServer.h>

#include <map>

namespace Norlis::TestKit {

/// A server that speaks the dialect of Nextcloud and ownCloud: their properties, hashes, file ids, pictures, chunked
/// uploads and the interfaces beside WebDAV. It is built from documented exchanges, not from either product, and covers
/// what tests need; whether the products answer the same has to be tried on them.
///
/// The name that signs in is not the user's id, which is part of the addresses.
class NextcloudLikeServer : public FaultServer {
public:
    NextcloudLikeServer();
    ~NextcloudLikeServer() override;

    QByteArray CollectionPath() const override;

    /// The id by which the server knows the user.
    QByteArray UserId() const;

    /// Raw figures of the quota properties; negative ones have meanings: -1 not computed, -2 unknown, -3 unlimited.
    void SetQuota(qint64 used, qint64 available);

    /// PNG that is sent as the preview of an existing document, whatever size is requested. Empty removes it.
    void SetPreview(const QString& name, const QByteArray& png);

    /// PNG of the user. Empty removes it.
    void SetAvatar(const QByteArray& png);

    /// The letters of oc:permissions, of an existing document.
    void SetPermissions(const QString& name, const QByteArray& letters);

    /// Approves a sign-in that was begun, as a person does in the browser.
    void ApproveSignIn();

    /// oc:fileid of a document; 0 when there is none.
    qint64 FileId(const QString& name);

private:
    ServerResponse Serve(const ServerRequest& request) override;
    bool IsPublic(const ServerRequest& request) const override;

    /// Nothing when the request is one of WebDAV.
    std::optional<ServerResponse> ServeBesideWebDav(const ServerRequest& request);
    ServerResponse ServeWebDav(const ServerRequest& request);
    ServerResponse WithErrorBody(const ServerRequest& request, ServerResponse answer) const;
    ServerResponse Store(const ServerRequest& request);
    ServerResponse Move(const ServerRequest& request);
    ServerResponse Assemble(const ServerRequest& request);
    ServerResponse Preview(const ServerRequest& request);
    ServerResponse Avatar() const;
    ServerResponse Ocs(const ServerRequest& request, const QByteArray& what);
    ServerResponse SignIn(const ServerRequest& request);
    ServerResponse Identified(ServerResponse answer, const QByteArray& path);
    std::optional<QByteArray> DialectProperty(const MemoryNode& node, const PropertyName& name) const;

    // All of it guarded by the server's lock.
    qint64 quotaUsed = 1000;
    qint64 quotaAvailable = -3;
    std::map<qint64, QByteArray> previews;    ///< by file id
    std::map<qint64, QByteArray> permissions; ///< by file id
    QByteArray avatar;
    QByteArray pollToken;
    bool isSignInApproved = false;
};

} // namespace Norlis::TestKit
