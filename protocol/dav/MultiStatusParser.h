#pragma once

#include "DavEntry.h"
#include "DavPath.h"
#include "PropertyReader.h"

#include <QByteArray>
#include <QString>
#include <QXmlStreamReader>

#include <vector>

namespace Norlis::Social {

/// Reads the response to a PROPFIND of depth 0 or 1 (RFC 4918, 13 and 14) while it arrives. On any thread, one at a
/// time.
///
/// The bytes may be anything: memory, beyond the entries that nobody has taken yet, stays below a few megabytes.
class MultiStatusParser {
public:
    static constexpr int maximumDepth = 100; ///< of nested elements
    static constexpr int maximumEntries = 1'000'000;
    static constexpr int maximumTextLength = 16 * 1024; ///< UTF-16 units of one value; a longer one is unknown
    static constexpr int maximumTokenSize = 64 * 1024;  ///< bytes of one tag, text or comment, roughly
    static constexpr qint64 maximumSize = qint64(1024) * 1024 * 1024; ///< bytes in all

    /// The collection that was asked for, or the document, at depth 0. Of hrefs that are absolute URLs only the path
    /// counts: behind some proxies they have another origin than the server that answered.
    explicit MultiStatusParser(DavPath collection);

    /// The next piece, of any size. False once the response has been found unreadable; the rest is then ignored.
    bool Add(const QByteArray& piece);

    /// After the last piece. False unless the whole response was a listing.
    bool Finish();

    /// One sentence without a full stop, empty while all is well. It holds nothing of what the server wrote.
    QString ErrorText() const
    {
        return error;
    }

    /// The entries that are complete by now, in the server's order, the collection itself among them; each once. After
    /// an error those that came before it: they are there, but nothing follows from what is missing.
    std::vector<DavEntry> TakeEntries();

    /// Resources that are neither the collection nor a direct member. They are left out.
    int ForeignCount() const
    {
        return foreignCount;
    }

    /// Responses whose href or status is unreadable, names that are not UTF-8, and further ones for the collection
    /// itself (as some servers write members whose names they cannot express). They are left out: the listing is
    /// incomplete.
    int MalformedCount() const
    {
        return malformedCount;
    }

    /// Of the malformed ones, those without a readable href: any member may be meant.
    int UnidentifiedCount() const
    {
        return unidentifiedCount;
    }

    /// Of the malformed ones, those of a member of which only the status is unreadable.
    int UndescribedCount() const
    {
        return undescribedCount;
    }

    /// Responses with an error in place of properties, other than "there is no such thing". They are left out: the
    /// listing is incomplete.
    int RefusedCount() const
    {
        return refusedCount;
    }

    /// Whether the collection itself was among the responses.
    bool SawSelf() const
    {
        return sawSelf;
    }

    /// Finished without an error, the collection seen, nothing left out as malformed or refused: what is not in the
    /// entries is not in the collection.
    bool IsComplete() const;

private:
    /// The element that the reader is in, of those that matter.
    enum class Place {
        Document,
        MultiStatus,
        Response,
        Href,
        ResponseStatus,
        Propstat,
        PropstatStatus,
        Prop,
        Property
    };

    /// Elements around it, and itself.
    static int Level(Place place);

    void AddOpening(const QByteArray& piece);
    void AddSlices(const QByteArray& bytes);
    void Read();
    void StartElement();
    bool Enter();
    void EndElement();
    void AddText(QStringView piece);
    void EndPropstat();
    void EndResponse();
    void Fail(const char* message);

    const DavPath collection;

    QXmlStreamReader reader;
    QByteArray opening; ///< the first bytes, until it is known what has to be left out before the declaration
    bool isOpen = false;
    bool isEnded = false; ///< the listing's last tag was read
    bool isFinished = false;
    QString error;
    qint64 size = 0;      ///< bytes so far
    qint64 tokenSize = 0; ///< bytes since the last whole token

    Place place = Place::Document;
    int depth = 0;        ///< of the element that the reader is in
    int skippedDepth = 0; ///< of the outermost element that is skipped; 0 when none is
    QString text;         ///< of the value that is being read
    bool isTextTooLong = false;

    // The response that is being read.
    DavEntry entry;
    DavEntry entryBefore; ///< the entry without the propstat that is being read
    PropertyReader property;
    QByteArray href;
    int responseStatus = 0;
    int propstatStatus = 0;
    bool hasStatus = false;

    std::vector<DavEntry> entries;
    int entryCount = 0;
    int foreignCount = 0;
    int malformedCount = 0;
    int unidentifiedCount = 0;
    int undescribedCount = 0;
    int refusedCount = 0;
    bool sawSelf = false;
};

} // namespace Norlis::Social
