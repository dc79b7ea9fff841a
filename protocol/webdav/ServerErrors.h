#pragma once

#include <protocol/http/HttpMessage.h>
#include <protocol/http/Secrets.h>

#include <contracts/OAuth2.h>

namespace Norlis::Social {

/// What an answer that was no success means to a person: the reason and the advice, without the secrets. The rest of
/// the failure is left to the caller. The one place where a status becomes words.
OAuth2::Failure ExplainFailure(const HttpResponse& response, const Secrets& secrets);

} // namespace Norlis::Social
