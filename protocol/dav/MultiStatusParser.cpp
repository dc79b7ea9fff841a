#include "MultiStatusParser.h"

#include <base/Utf8.h>

#include <algorithm>
#include <utility>

namespace Norlis::Social {

namespace {

constexpr int sliceSize = 16 * 1024; // bytes given to the reader at once, which needs several times as much memory
constexpr int openingSize = 4;       // bytes by which the reader detects the encoding
constexpr int tooEarly = 425;        // RFC 8470: the content is not ready yet

const QLatin1String davNamespace("DAV:");
const QString separator = QStringLiteral(" ");

constexpr auto noListing = "The answer is not a WebDAV listing";
constexpr auto damaged = "The listing is damaged";
constexpr auto tooLong = "The listing is too long";

bool IsSpace(char character)
{
    return character == ' ' || character == '\n' || character == '\r' || character == '\t';
}

bool IsAscii(char character)
{
    return static_cast<unsigned char>(character) < 0x80;
}

/// The number after "HTTP/x"; 0 when there is none. The reason may be missing.
int StatusOf(const QString& text)
{
    const QStringView line = QStringView(text).trimmed();
    const int blank = line.indexOf(' ');
    if (blank < 0 || !line.startsWith(QLatin1String("HTTP/"), Qt::CaseInsensitive)) {
        return 0;
    }
    const QStringView rest = line.mid(blank).trimmed();
    const int end = rest.indexOf(' ');
    const QStringView number = end < 0 ? rest : rest.left(end);
    const int status = number.size() == 3 ? number.toInt() : 0;
    return status >= 100 ? status : 0;
}

/// The size of the next slice. One wrongly encoded character makes the reader refuse the slice that it is in, so that
/// such characters, which are escaped in nearly all listings, come apart from what precedes them.
int SliceSize(const QByteArray& bytes, int begin)
{
    const int size = std::min(sliceSize, static_cast<int>(bytes.size()) - begin);
    const char* first = bytes.constData() + begin;
    unsigned char all = 0;
    for (int position = 0; position < size; ++position) {
        all |= static_cast<unsigned char>(first[position]);
    }
    if (all < 0x80) {
        return size;
    }
    const auto isOther = [isAscii = IsAscii(*first)](char character) { return IsAscii(character) != isAscii; };
    return static_cast<int>(std::find_if(first, first + size, isOther) - first);
}

/// A document whose content is still being processed is there, too.
bool IsSuccess(int status)
{
    return (status >= 200 && status < 300) || status == tooEarly;
}

bool IsUtf8(const QByteArray& bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), IsAscii) || FromUtf8(bytes).toUtf8() == bytes;
}

} // namespace

int MultiStatusParser::Level(Place place)
{
    switch (place) {
    case Place::Document:
        return 0;
    case Place::MultiStatus:
        return 1;
    case Place::Response:
        return 2;
    case Place::Href:
    case Place::ResponseStatus:
    case Place::Propstat:
        return 3;
    case Place::PropstatStatus:
    case Place::Prop:
        return 4;
    case Place::Property:
        return 5;
    }
    return 0;
}

MultiStatusParser::MultiStatusParser(DavPath collection) : collection(std::move(collection))
{
    text.reserve(256);
}

bool MultiStatusParser::Add(const QByteArray& piece)
{
    size += piece.size();
    if (size > maximumSize) {
        Fail(tooLong);
    } else if (!isOpen) {
        AddOpening(piece);
    } else {
        AddSlices(piece);
    }
    return error.isEmpty();
}

bool MultiStatusParser::Finish()
{
    if (!isOpen) {
        isOpen = true;
        AddSlices(opening);
    }
    if (!isEnded) {
        Fail(place == Place::Document ? noListing : "The listing is cut off");
    }
    isFinished = true;
    return error.isEmpty();
}

/// Some servers let line feeds precede the declaration, which XML does not allow.
void MultiStatusParser::AddOpening(const QByteArray& piece)
{
    opening += piece;
    int begin = opening.startsWith("\xef\xbb\xbf") ? 3 : 0;
    while (begin < opening.size() && IsSpace(opening[begin])) {
        ++begin;
    }
    opening.remove(0, begin);
    if (opening.size() >= openingSize) {
        isOpen = true;
        AddSlices(std::exchange(opening, {}));
    }
}

void MultiStatusParser::AddSlices(const QByteArray& bytes)
{
    for (int begin = 0; begin < bytes.size() && error.isEmpty() && !isEnded;) {
        const QByteArray slice = bytes.mid(begin, SliceSize(bytes, begin));
        begin += slice.size();
        tokenSize += slice.size();
        reader.addData(slice);
        Read();
        if (tokenSize > maximumTokenSize) {
            Fail(place == Place::Document ? noListing : damaged); // also when the reader is stuck at a wrong encoding
        }
    }
}

void MultiStatusParser::Read()
{
    // What follows the last tag, a script's warning for instance, is not part of the listing.
    while (error.isEmpty() && !isEnded && !reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            StartElement();
            break;
        case QXmlStreamReader::EndElement:
            EndElement();
            break;
        case QXmlStreamReader::Characters:
            AddText(reader.text());
            break;
        case QXmlStreamReader::DTD:
            Fail(noListing); // web pages have one, and so have attacks by entities
            break;
        case QXmlStreamReader::Invalid:
            if (reader.error() != QXmlStreamReader::PrematureEndOfDocumentError) {
                Fail(place == Place::Document ? noListing : damaged);
            }
            continue;
        default:
            break;
        }
        tokenSize = 0;
    }
}

void MultiStatusParser::StartElement()
{
    if (++depth > maximumDepth) {
        Fail("The listing is nested too deeply");
    } else if (skippedDepth == 0 && !Enter()) {
        skippedDepth = depth;
    }
}

/// False for an element that does not matter in its place.
bool MultiStatusParser::Enter()
{
    const QStringView name = reader.name();
    const QStringView namespaceUri = reader.namespaceUri();
    const bool isDav = namespaceUri == davNamespace;
    const auto is = [&](const char* davName) { return isDav && name == QLatin1String(davName); };
    const auto enter = [&](Place inner) {
        place = inner;
        text.resize(0);
        isTextTooLong = false;
        return true;
    };

    switch (place) {
    case Place::Document:
        if (!is("multistatus")) {
            Fail(noListing);
            return false;
        }
        return enter(Place::MultiStatus);
    case Place::MultiStatus:
        if (is("response")) {
            entry = {};
            href.clear();
            responseStatus = 0;
            hasStatus = false;
            return enter(Place::Response);
        }
        return false;
    case Place::Response:
        if (is("propstat")) {
            entryBefore = entry;
            propstatStatus = 0;
            return enter(Place::Propstat);
        }
        return (is("href") && enter(Place::Href)) || (is("status") && enter(Place::ResponseStatus));
    case Place::Propstat:
        return (is("prop") && enter(Place::Prop)) || (is("status") && enter(Place::PropstatStatus));
    case Place::Prop:
        return property.Begin(namespaceUri, name) && enter(Place::Property);
    case Place::Property:
        if (depth == Level(Place::Property) + 1) {
            property.Child(namespaceUri, name, entry);
        }
        AddText(separator); // between the texts of children
        return true;
    default:
        return false;
    }
}

void MultiStatusParser::EndElement()
{
    const int ended = depth--;
    if (skippedDepth > 0) {
        skippedDepth = ended == skippedDepth ? 0 : skippedDepth;
        return;
    }
    if (ended > Level(place)) {
        return; // a property's child
    }
    switch (place) {
    case Place::Document:
        break;
    case Place::MultiStatus:
        isEnded = true;
        break;
    case Place::Response:
        EndResponse();
        place = Place::MultiStatus;
        break;
    case Place::Href:
        href = isTextTooLong ? QByteArray() : text.toUtf8();
        place = Place::Response;
        break;
    case Place::ResponseStatus:
        responseStatus = StatusOf(text);
        place = Place::Response;
        break;
    case Place::Propstat:
        EndPropstat();
        place = Place::Response;
        break;
    case Place::PropstatStatus:
        propstatStatus = StatusOf(text);
        place = Place::Propstat;
        break;
    case Place::Prop:
        place = Place::Propstat;
        break;
    case Place::Property:
        if (!isTextTooLong) {
            property.End(text, entry);
        }
        place = Place::Prop;
        break;
    }
}

void MultiStatusParser::AddText(QStringView piece)
{
    const bool isValue = place == Place::Href || place == Place::ResponseStatus || place == Place::PropstatStatus ||
                         place == Place::Property;
    if (!isValue || skippedDepth > 0) {
        return;
    }
    isTextTooLong = isTextTooLong || text.size() + piece.size() > maximumTextLength;
    if (!isTextTooLong) {
        text.append(piece.data(), static_cast<int>(piece.size()));
    }
}

void MultiStatusParser::EndPropstat()
{
    hasStatus = hasStatus || propstatStatus != 0;
    if (!IsSuccess(propstatStatus)) {
        entry = entryBefore;
    }
}

void MultiStatusParser::EndResponse()
{
    const std::optional<DavPath> path = SegmentsOfHref(href);
    std::optional<QByteArray> name = path ? MemberName(collection, *path) : std::nullopt;
    if (!path || !(hasStatus || responseStatus != 0)) {
        ++malformedCount;
        unidentifiedCount += path ? 0 : 1;
        undescribedCount += name ? 1 : 0;
        return;
    }
    if (!name) {
        ++foreignCount;
        return;
    }
    if (responseStatus != 0 && !IsSuccess(responseStatus)) {
        const bool isAbsent = responseStatus == 404 || responseStatus == 410;
        refusedCount += isAbsent ? 0 : 1;
        return;
    }
    entry.isSelf = name->isEmpty();
    if ((entry.isSelf && sawSelf) || !IsUtf8(*name)) {
        ++malformedCount;
        return;
    }
    if (entryCount == maximumEntries) {
        Fail(tooLong);
        return;
    }
    sawSelf = sawSelf || entry.isSelf;
    entry.name = std::move(*name);
    entries.push_back(std::move(entry));
    ++entryCount;
}

void MultiStatusParser::Fail(const char* message)
{
    if (error.isEmpty()) {
        error = message;
    }
}

std::vector<DavEntry> MultiStatusParser::TakeEntries()
{
    return std::exchange(entries, {});
}

bool MultiStatusParser::IsComplete() const
{
    return isFinished && error.isEmpty() && sawSelf && malformedCount == 0 && refusedCount == 0;
}

} // namespace Norlis::Social
