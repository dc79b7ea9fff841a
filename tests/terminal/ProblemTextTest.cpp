#include <apps/terminal/ProblemText.h>

#include <gtest/gtest.h>

namespace Norlis::Test {

namespace {

using namespace Terminal;
using Host::CloudProblem;

CloudProblem Problem(CloudProblem::Request request, const QString& document, const QString& reason,
                     const QString& advice = {})
{
    CloudProblem problem;
    problem.request = request;
    problem.message = "Upload file error";
    problem.cause.document = document;
    problem.cause.reason = reason;
    problem.cause.advice = advice;
    return problem;
}

TEST(ProblemTextTest, SaysWhatFailedWhyAndWhatToDo)
{
    EXPECT_EQ(ProblemText(Problem(CloudProblem::Request::Upload, "report.pdf",
                                  "The server has no room left (507: quota exceeded).",
                                  "Free some space in the cloud and try again.")),
              "Uploading \"report.pdf\" failed: The server has no room left (507: quota exceeded). Free some "
              "space in the cloud and try again");
    EXPECT_EQ(ProblemText(Problem(CloudProblem::Request::SignIn, {}, "The server did not take the password (401)")),
              "Signing in failed: The server did not take the password (401)");
}

TEST(ProblemTextTest, FixedTextStandsInForAReasonThatNobodyGave)
{
    EXPECT_EQ(ProblemText(Problem(CloudProblem::Request::Upload, "report.pdf", {})),
              "Uploading \"report.pdf\" failed: Upload file error");
}

TEST(ProblemTextTest, NameThatTheCommandKnowsComesFirstAndTheSubjectLast)
{
    auto problem = Problem(CloudProblem::Request::Download, "as-stored.pdf", "It is gone");
    problem.subject = "17";
    EXPECT_EQ(ProblemText(problem, "report.pdf"), "Downloading \"report.pdf\" failed: It is gone");
    EXPECT_EQ(ProblemText(problem), "Downloading \"as-stored.pdf\" failed: It is gone");
    problem.cause.document.clear();
    EXPECT_EQ(ProblemText(problem), "Downloading \"17\" failed: It is gone");
}

TEST(ProblemTextTest, PlaceholdersInTextsOfTheServerStayAsTheyAre)
{
    EXPECT_EQ(ProblemText(Problem(CloudProblem::Request::Upload, "%1 of %2.pdf", "100% %1 %s")),
              "Uploading \"%1 of %2.pdf\" failed: 100% %1 %s");
}

TEST(ProblemTextTest, FailureOfARequestWithoutASession)
{
    Social::OAuth2::Failure failure;
    failure.reason = "Nobody listens there.";
    failure.advice = "Check the address.";
    EXPECT_EQ(FailureText("Signing in failed", failure), "Signing in failed: Nobody listens there. Check the address");
    EXPECT_EQ(FailureText("Signing in failed", {}), "Signing in failed");
}

} // namespace

} // namespace Norlis::Test
