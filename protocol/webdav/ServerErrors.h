#pragma once

#include <protocol/http/HttpMessage.h>
#include <protocol/http/Secrets.h>

#include <contracts/OAuth2.h>

namespace Norlis::Social {

/// Explains an unsuccessful response to the user: the reason and the advice, without secrets. The rest of the failure
/// is left to the caller. The only place where a status becomes words.
OAuth2::Failure ExplainFailure(const HttpResponse& response, const Secrets& secrets);

} // namespace Norlis::Social
