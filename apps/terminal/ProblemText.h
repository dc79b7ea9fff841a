#pragma once

#include <host/session/CloudSession.h>

namespace Norlis::Terminal {

/// What failed, which document, what the service said, what to do: in one sentence or two.
/// \param document name to show; empty takes that which the service mentions
QString ProblemText(const Host::CloudProblem& problem, const QString& document = {});

/// The same for a request that was made without a session.
QString FailureText(const QString& what, const Social::OAuth2::Failure& cause);

} // namespace Norlis::Terminal
