#pragma once

#include "DavEntry.h"
#include "DavPath.h"
#include <protocol/http/HttpMessage.h>

#include <chrono>

namespace Norlis::Social {

/// The one resource of a listing of depth 0; nothing when the response is not about it.
std::optional<DavEntry> EntryOfDepth0(const HttpResponse& response, const DavPath& path);

/// What has become of a request that changes something: a PUT, a MOVE or a DELETE.
struct ChangeResult {
    enum class Outcome {
        Done,    ///< as far as the server says: some say so and have done nothing
        Refused, ///< nothing has changed
        Unclear, ///< only a look shows it: the response was lost, or comes from a gateway, or is a web page
    };

    Outcome outcome = Outcome::Unclear;
    HttpResponse response; ///< for error texts. One of several statuses has that of what failed in place of the 207
    bool isOfPart = false; ///< the status comes from inside of a 207

    bool IsDone() const
    {
        return outcome == Outcome::Done;
    }
};

/// The one place where a response to such a request is judged.
ChangeResult JudgeChange(const HttpResponse& response);

/// Whether a response to PROPPATCH says that the property was stored, which a 207 alone does not.
bool IsPropertyStored(const HttpResponse& response);

/// The token that a LOCK was answered with, with its angle brackets; empty when there is none. RFC 4918, 10.5.
QByteArray LockTokenOf(const HttpResponse& response);

/// How long that lock lasts: as long as was asked for, unless the server says less.
std::chrono::seconds LockDurationOf(const HttpResponse& response);

/// Whether a status says that the resource does not exist.
bool IsMissing(int status);

} // namespace Norlis::Social
