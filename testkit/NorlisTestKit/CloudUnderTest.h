#pragma once

#include <contracts/ICloudProtocol.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Norlis::TestKit {

/// A cloud with which the contract tests hold its protocol to what ICloudProtocol promises: whoever writes a protocol
/// derives a class from this. Each test has a new, empty one, makes one protocol or several, and changes the documents
/// behind their back.
///
/// Used on the thread of the test, which is that of the protocols. What fails is to be reported as a failure of the
/// test.
class CloudUnderTest {
public:
    virtual ~CloudUnderTest() = default;

    /// A protocol that nobody is signed in to. All protocols of an object use the same cloud and may exist at once,
    /// like the programs of several users; each is destroyed before the object.
    virtual std::unique_ptr<PDF::Cloud::ICloudProtocol> MakeProtocol() = 0;

    /// As the first one that was made, in a later run of the same user's program: what that one has noted on this
    /// computer is there.
    virtual std::unique_ptr<PDF::Cloud::ICloudProtocol> MakeProtocolOfNextRun();

    /// A protocol whose downloads may replace a file that somebody else has put at their target. Null where there is no
    /// such: what such a download leaves behind is not tested then.
    virtual std::unique_ptr<PDF::Cloud::ICloudProtocol> MakeReplacingProtocol();

    /// What signs in to it.
    virtual QString Token();

    /// \name Behind the protocols' back
    /// @{

    /// Creates a document, or gives it new content.
    virtual void Put(const QString& name, const QByteArray& content) = 0;

    /// As Put, with that many zero bytes.
    virtual void PutLarge(const QString& name, qint64 size);

    /// The content of a document; nothing when there is none of that name.
    virtual std::optional<QByteArray> Get(const QString& name) = 0;

    /// Removes a document that is there.
    virtual void Take(const QString& name) = 0;

    /// Everything in the cloud, sorted, whether it is a document or a leftover of a transfer. Looks itself: it is asked
    /// for while no event loop runs.
    virtual QStringList Content() = 0;

    /// Makes the cloud unreachable, also for transfers that are under way.
    virtual void Withdraw() = 0;

    /// Ends what Withdraw began.
    virtual void Restore() = 0;

    /// @}

    /// \name In what clouds may differ
    /// The answers of a cloud with nothing special. Another answer changes what tests expect, or skips them with a
    /// reason.
    /// @{

    /// Lists the hashes of documents that somebody else has put there. Where it does not, it lists "version:" texts.
    virtual bool HashesForeignDocuments() const;

    /// Lists the hashes of uploaded documents, to every protocol. To the one that has sent a document they are listed
    /// anyway.
    virtual bool KeepsHashes() const;

    /// Lists when a document was created.
    virtual bool ReportsCreationTime() const;

    /// What the quota figures measure.
    enum class QuotaOf {
        Documents, ///< what the documents take, and nothing else
        Disk,      ///< what is on a disk that has other things too
        Nothing    ///< the figures are unknown: NorlisCloudProtocol::unknownQuota
    };

    /// See QuotaOf.
    virtual QuotaOf CountsInQuota() const;

    /// Has pictures of documents in PDF. Where it has none, every request for one fails.
    virtual bool HasPreviews() const;

    /// Neither lists nor accepts documents whose names other systems do not allow: with a backslash or control
    /// characters, or those of devices, such as "CON.pdf". Programs that run on those systems need that.
    virtual bool RefusesUnsafeNames() const;

    /// Lists documents whose names begin with a dot.
    virtual bool ListsNamesThatBeginWithADot() const;

    /// Lists names with control characters unchanged, if it lists them at all.
    virtual bool ListsControlCharacters() const;

    /// Lists names with `%` or `&`.
    virtual bool ListsPercentSignsAndAmpersands() const;

    /// Length of the longest name of a document, in bytes of UTF-8, that still gets a number if it is taken.
    virtual int LongestName() const;

    /// The name that a document is given if documents already have the one that it should have, and the numbers before.
    /// \param number 2 for the second document of the name
    virtual QString NumberedName(const QString& name, int number) const;

    /// Whether a list may hold a document of that name while an upload is under way: an unfinished file that the cloud
    /// itself has named.
    virtual bool MayListWhileUploading(const QString& name) const;

    /// Reports success for the removal of a document that somebody else has removed already.
    virtual bool AcceptsRepeatedRemoval() const;

    /// Restarts a download when the document changes, instead of giving it up.
    virtual bool RestartsDownloadOnChange() const;

    /// A picture is one of the new content as soon as a document has changed. Where it is not, the list has to be
    /// requested before.
    virtual bool NoticesChangesByItself() const;

    /// Transfers go on while the protocol's thread runs no event loop. Where they do not, a cancellation cannot come
    /// between the moment at which a document is in its place and the callback.
    virtual bool WorksInTheBackground() const;

    /// Nothing changes any more once a protocol has been destroyed.
    virtual bool IsQuietAfterDestruction() const;

    /// How many documents it can list within seconds.
    virtual int ManyDocuments() const;

    /// The largest document, in bytes, of tests that need a transfer with many steps: some megabytes do if progress is
    /// reported for each percent.
    virtual qint64 LargeSize() const;

    /// @}

    /// What helps to explain a failed test, shown with it.
    virtual QByteArray Log() const;
};

/// One kind of cloud that is tested.
struct KindOfCloud {
    std::string name;                                      ///< letters and digits; part of the names of the tests
    std::function<std::unique_ptr<CloudUnderTest>()> make; ///< called for each test
};

/// The kinds with which a test program runs the contract tests; defined by that program.
std::vector<KindOfCloud> KindsOfClouds();

} // namespace Norlis::TestKit
