#pragma once

#include "Files.h"
#include "ServiceUnderTest.h"

#include <tests/servers/WebDavServer.h>

#include <initializer_list>

namespace Norlis::Test {

/// The running server of a kind, which all tests of a program share.
WebDavServer& SharedServer(ServerKind kind);

/// A collection of a WebDAV server as a cloud, new for each test. Tests reach its documents on the server's disk.
class WebDavUnderTest : public ServiceUnderTest {
public:
    explicit WebDavUnderTest(WebDavServer& server);
    ~WebDavUnderTest() override;

    Social::OAuth2::AuthInfo Settings() override;
    QString Token() override;
    void Put(const QString& name, const QByteArray& content) override;
    bool PutAsOthers(const QString& name, const QByteArray& content) override;
    void PutLarge(const QString& name, qint64 size) override;
    std::optional<QByteArray> Get(const QString& name) override;
    void Take(const QString& name) override;
    QStringList Content() override;
    void Withdraw() override;
    void Restore() override;

    bool HashesForeignDocuments() const override;
    bool KeepsHashes() const override;
    bool ReportsCreationTime() const override;
    QuotaOf CountsInQuota() const override;
    bool ListsNamesThatBeginWithADot() const override;
    int LongestName() const override;
    bool ListsControlCharacters() const override;
    bool ListsPercentSignsAndAmpersands() const override;
    bool MayListWhileUploading(const QString& name) const override;
    bool AcceptsRepeatedRemoval() const override;
    bool RestartsDownloadOnChange() const override;
    bool NoticesChangesByItself() const override;
    bool IsQuietAfterDestruction() const override;
    bool TellsWritersApart() const override;
    int ManyDocuments() const override;
    qint64 LargeSize() const override;
    QByteArray Log() const override;

    WebDavServer& Server() const;
    QString PathOf(const QString& name) const;

private:
    bool IsKind(std::initializer_list<ServerKind> kinds) const;

    WebDavServer& server;
    const QString collection;
    const QString folder;
};

} // namespace Norlis::Test
