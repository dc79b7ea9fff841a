#pragma once

#include <NorlisTestKit/FaultServer.h>

#include <QJsonObject>

#include <map>

namespace Norlis::TestKit {

/// A server that speaks the dialect of Nextcloud and ownCloud: their properties, hashes, file ids, pictures, chunked
/// uploads and the interface beside WebDAV. It is built from documented exchanges, not from either product, and knows
/// nothing that a test here does not need; that the products answer so has to be tried on them.
///
/// The name that one signs in with is not the user's id, which addresses are made of.
class FamilyServer : public FaultServer {
public:
    FamilyServer();
    ~FamilyServer() override;

    QByteArray CollectionPath() const override;

    /// The id that the server has for the user.
    QByteArray UserId() const;

    /// Raw figures of the quota properties; negative ones have meanings: -1 not computed, -2 unknown, -3 unlimited.
    void SetQuota(qint64 used, qint64 available);

    /// PNG of the preview of a document that is there already, which is sent in whatever size is asked for. Empty takes
    /// it away.
    void SetPreview(const QString& name, const QByteArray& png);

    /// PNG of the user. Empty takes it away.
    void SetAvatar(const QByteArray& png);

    /// The letters of oc:permissions, of a document that is there already.
    void SetPermissions(const QString& name, const QByteArray& letters);

    /// The "capabilities" of the answer to that question.
    void SetCapabilities(const QJsonObject& capabilities);

    /// Lets the person in the browser agree to a sign-in that was begun.
    void AgreeToSignIn();

    /// oc:fileid of a document; 0 when there is none.
    qint64 FileId(const QString& name);

private:
    ServerAnswer Serve(const ServerRequest& request) override;
    bool IsPublic(const ServerRequest& request) const override;

    /// Nothing when a request is WebDAV's.
    std::optional<ServerAnswer> ServeBesideWebDav(const ServerRequest& request);
    ServerAnswer ServeWebDav(const ServerRequest& request);
    ServerAnswer WithErrorBody(const ServerRequest& request, ServerAnswer answer) const;
    ServerAnswer Store(const ServerRequest& request);
    ServerAnswer Move(const ServerRequest& request);
    ServerAnswer Assemble(const ServerRequest& request);
    ServerAnswer Preview(const ServerRequest& request);
    ServerAnswer Avatar() const;
    ServerAnswer Ocs(const ServerRequest& request, const QByteArray& what);
    ServerAnswer SignIn(const ServerRequest& request);
    ServerAnswer Identified(ServerAnswer answer, const QByteArray& path);
    std::optional<QByteArray> FamilyProperty(const MemoryNode& node, const PropertyName& name) const;

    // All of it guarded by the server's lock.
    qint64 quotaUsed = 1000;
    qint64 quotaAvailable = -3;
    std::map<qint64, QByteArray> previews;    ///< by file id
    std::map<qint64, QByteArray> permissions; ///< by file id
    QByteArray avatar;
    QJsonObject capabilities;
    QByteArray pollToken;
    bool isSignInAgreedTo = false;
};

} // namespace Norlis::TestKit
