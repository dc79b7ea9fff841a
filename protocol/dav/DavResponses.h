#pragma once

#include "DavEntry.h"
#include "DavPath.h"
#include <protocol/http/HttpMessage.h>

namespace Norlis::Social {

/// The one resource of a listing of depth 0; nothing when the response is not about it.
std::optional<DavEntry> EntryOfDepth0(const HttpResponse& response, const DavPath& path);

/// Whether a response to PROPPATCH says that the property was stored, which a 207 alone does not.
bool IsPropertyStored(const HttpResponse& response);

/// Whether a status says that the resource does not exist.
bool IsMissing(int status);

} // namespace Norlis::Social
