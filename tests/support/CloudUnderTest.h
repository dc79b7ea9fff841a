#pragma once

#include <contracts/OAuth2.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Norlis::Test {

/// A cloud that a test can also change behind the protocol object's back. Every kind of service has one, and passes the
/// same tests.
class CloudUnderTest {
public:
    virtual ~CloudUnderTest() = default;

    /// For constructing a protocol object that uses the cloud.
    virtual Social::OAuth2::AuthInfo Settings() = 0;

    /// For signing in to it.
    virtual QString Token();

    virtual void Put(const QString& name, const QByteArray& content) = 0;

    /// As somebody with another program, who keeps off what is locked, if the cloud has locks. False when it is
    /// refused.
    virtual bool PutAsOthers(const QString& name, const QByteArray& content);

    /// A document of that many zero bytes.
    virtual void PutLarge(const QString& name, qint64 size) = 0;

    virtual std::optional<QByteArray> Get(const QString& name) = 0;
    virtual void Take(const QString& name) = 0;

    /// Everything in the cloud, sorted, whether it is a document or a leftover of a transfer.
    virtual QStringList Content() = 0;

    /// Makes the cloud unreachable; Restore ends that.
    virtual void Withdraw() = 0;
    virtual void Restore() = 0;

    // In what clouds may differ.

    /// Lists the hashes of documents that somebody else has put there.
    virtual bool HashesForeignDocuments() const;

    /// Lists the hashes of uploaded documents, to every client.
    virtual bool KeepsHashes() const;

    virtual bool ReportsCreationTime() const;

    /// What the quota figures measure; for Nothing they are unknown.
    enum class QuotaOf { Documents, Disk, Nothing };
    virtual QuotaOf CountsInQuota() const;

    virtual bool ListsNamesThatBeginWithADot() const;

    /// Of a document that gets a number besides if the name is taken, in bytes.
    virtual int LongestName() const;

    /// Lists names with control characters unchanged.
    virtual bool ListsControlCharacters() const;

    /// Lists names with these: there are servers whose list is malformed then.
    virtual bool ListsPercentSignsAndAmpersands() const;

    /// Reports success for the removal of a document that somebody else has removed already.
    virtual bool AcceptsRepeatedRemoval() const;

    /// Restarts a download when the document changes, instead of giving it up.
    virtual bool RestartsDownloadOnChange() const;

    /// Notices new content of a document without a request for the list.
    virtual bool NoticesChangesByItself() const;

    /// Nothing changes any more once a client has been destroyed.
    virtual bool IsQuietAfterDestruction() const;

    /// Of two who replace or remove a document in the very same moment, one is refused.
    virtual bool TellsWritersApart() const;

    /// How many documents it can list quickly enough for a test.
    virtual int ManyDocuments() const;

    /// Maximum size, in bytes, of a document when a test needs a transfer that takes a while.
    virtual qint64 LargeSize() const;

    /// What helps to explain a failed test.
    virtual QByteArray Log() const;
};

struct KindOfCloud {
    std::string name;
    std::function<std::unique_ptr<CloudUnderTest>()> make;
};

/// The kinds that a test program tests.
std::vector<KindOfCloud> KindsOfClouds();

} // namespace Norlis::Test
