#pragma once

#include <host/session/CloudSession.h>

namespace Norlis::Terminal {

/// What failed, for which document, what the service said and what to do, in one or two sentences.
/// \param document name to show; if empty, the one that the service mentions
QString ProblemText(const Host::CloudProblem& problem, const QString& document = {});

/// The same for a request that was made without a session.
QString FailureText(const QString& what, const Social::OAuth2::Failure& cause);

} // namespace Norlis::Terminal
