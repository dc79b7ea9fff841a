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

/// A cloud that a test can also reach behind the protocol object's back. Every kind of service has one, and passes the
/// same tests.
class CloudUnderTest {
public:
    virtual ~CloudUnderTest() = default;

    /// With which a protocol object is constructed that uses the cloud.
    virtual Social::OAuth2::AuthInfo Settings() = 0;

    /// With which one signs in to it.
    virtual QString Token();

    virtual void Put(const QString& name, const QByteArray& content) = 0;

    /// A document of that many zero bytes.
    virtual void PutLarge(const QString& name, qint64 size) = 0;

    virtual std::optional<QByteArray> Get(const QString& name) = 0;
    virtual void Take(const QString& name) = 0;

    /// Everything in the cloud, sorted, whether it is a document or a leftover of a transfer.
    virtual QStringList Content() = 0;

    /// Makes the cloud unreachable; Restore ends that.
    virtual void Withdraw() = 0;
    virtual void Restore() = 0;

    // What clouds differ in, and may.

    /// Lists the hash of what somebody else has put there.
    virtual bool HashesForeignDocuments() const;

    /// Lists the hash of what was uploaded, to everybody.
    virtual bool KeepsHashes() const;

    virtual bool TellsCreation() const;

    /// What the figures of the quota are about; of Nothing they are unknown.
    enum class QuotaOf { Documents, Disk, Nothing };
    virtual QuotaOf CountsInQuota() const;

    virtual bool ListsNamesThatBeginWithADot() const;

    /// Lists names with control characters, and as they are.
    virtual bool ListsControlCharacters() const;

    /// Says of a document that somebody else has taken away that its removal succeeded.
    virtual bool TakesRemovalTwice() const;

    /// Begins a download again when the document changes meanwhile, instead of giving it up.
    virtual bool FetchesChangedDocumentsAnew() const;

    /// Notices that a document has other content without being asked for a list.
    virtual bool SeesChangesByItself() const;

    /// When a client's destruction is over, nothing changes any more.
    virtual bool IsQuietAfterDestruction() const;

    /// How many documents it lists quickly enough for a test.
    virtual int ManyDocuments() const;

    /// The most bytes that a document is sent with when a test needs a transfer that takes its time.
    virtual qint64 LargeSize() const;

    /// What it has to say about a test that failed.
    virtual QByteArray Log() const;
};

struct KindOfCloud {
    std::string name;
    std::function<std::unique_ptr<CloudUnderTest>()> make;
};

/// The kinds that a test program tests.
std::vector<KindOfCloud> KindsOfClouds();

} // namespace Norlis::Test
