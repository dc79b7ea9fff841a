#include "ProblemText.h"

namespace Norlis::Terminal {

namespace {

QString TitleOf(Host::CloudProblem::Request request)
{
    switch (request) {
    case Host::CloudProblem::Request::SignIn:
        return "Signing in failed";
    case Host::CloudProblem::Request::List:
        return "Fetching the list failed";
    case Host::CloudProblem::Request::Upload:
        return "Uploading %1 failed";
    case Host::CloudProblem::Request::Download:
        return "Downloading %1 failed";
    case Host::CloudProblem::Request::Remove:
        return "Removing %1 failed";
    case Host::CloudProblem::Request::Preview:
        return "Creating a preview of %1 failed";
    case Host::CloudProblem::Request::Quota:
        return "Fetching the storage usage failed";
    }
    return "Something failed";
}

QString WithoutPeriod(QString text)
{
    while (text.endsWith('.')) {
        text.chop(1);
    }
    return text;
}

} // namespace

QString ProblemText(const Host::CloudProblem& problem, const QString& document)
{
    QString name = document.isEmpty() ? problem.cause.document : document;
    if (name.isEmpty()) {
        name = problem.subject;
    }
    auto cause = problem.cause;
    if (cause.reason.isEmpty()) {
        cause.reason = problem.message;
    }
    return FailureText(TitleOf(problem.request).replace("%1", '"' + name + '"'), cause);
}

QString FailureText(const QString& what, const Social::OAuth2::Failure& cause)
{
    QString text = what;
    if (!cause.reason.isEmpty()) {
        text += ": " + WithoutPeriod(cause.reason);
    }
    if (!cause.details.isEmpty()) {
        text += " (" + WithoutPeriod(cause.details) + ')';
    }
    if (!cause.advice.isEmpty()) {
        text += ". " + WithoutPeriod(cause.advice);
    }
    return text;
}

} // namespace Norlis::Terminal
