// Feeds the reader of WebDAV listings with what no server would send, see LLVM's libFuzzer:
//   MultiStatusFuzzer -dict=<sources>/fuzz/multistatus.dict -max_total_time=60 <new folder>
//   <sources>/fuzz/corpus/multistatus

#include "Require.h"

#include <protocol/dav/MultiStatusParser.h>

#include <algorithm>

namespace {

using namespace Norlis::Social;
using Norlis::Fuzz::Require;

const DavPath collection = {"papers"};

struct Outcome {
    std::vector<DavEntry> entries;
    bool isListing = false;
    bool isComplete = false;
    int malformedCount = 0;
};

Outcome Read(const QByteArray& answer, int pieceSize)
{
    MultiStatusParser parser(collection);
    Outcome outcome;
    for (int begin = 0; begin < answer.size(); begin += pieceSize) {
        parser.Add(QByteArray::fromRawData(answer.constData() + begin, std::min(pieceSize, answer.size() - begin)));
        for (DavEntry& entry : parser.TakeEntries()) {
            outcome.entries.push_back(std::move(entry));
        }
    }
    outcome.isListing = parser.Finish();
    outcome.isComplete = parser.IsComplete();
    outcome.malformedCount = parser.MalformedCount();
    Require(outcome.isListing == parser.ErrorText().isEmpty());
    Require(outcome.isListing || !outcome.isComplete);
    return outcome;
}

/// What the users of an entry rely on.
void CheckEntry(const DavEntry& entry)
{
    Require(entry.isSelf == entry.name.isEmpty());
    Require(entry.isSelf || DecodeSegment(EncodeSegment(entry.name)) == entry.name);
    Require(QString::fromUtf8(entry.name).toUtf8() == entry.name);
    Require(entry.size.value_or(0) >= 0);
    Require(entry.md5.isEmpty() || entry.md5.size() == 32);
    Require(entry.storedMd5.isEmpty() == entry.storedEtag.isEmpty());
    Require(!entry.etag.contains('\n') && !entry.etag.contains('\r') && !entry.storedEtag.contains('\n'));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // A copy of that size, so that reading beyond its end is noticed.
    const QByteArray answer(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const Outcome whole = Read(answer, std::max(answer.size(), 1));
    std::for_each(whole.entries.begin(), whole.entries.end(), CheckEntry);

    if (answer.lastIndexOf("\xef\xbb\xbf") > 0) {
        return 0; // Qt's decoder drops a mark of byte order wherever a piece begins with it, not only in the first one
    }
    const int pieceSize = 1 + (answer.isEmpty() ? 0 : static_cast<unsigned char>(answer.back()) % 61);
    const Outcome pieces = Read(answer, pieceSize);
    // The other way round there is one: a bare "]]>" in a text is refused whole, and read when it comes in pieces.
    Require(pieces.isListing || !whole.isListing);
    if (whole.isListing) {
        Require(pieces.isComplete == whole.isComplete && pieces.malformedCount == whole.malformedCount);
        Require(pieces.entries.size() == whole.entries.size());
    }
    return 0;
}
