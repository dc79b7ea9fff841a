#include "ServerTest.h"

namespace Norlis::Test {

QString ServerTest::Address() const
{
    return server.Address().toString();
}

QString ServerTest::PasswordFile()
{
    return MakeFile("password", server.Password().toUtf8());
}

void ServerTest::SignIn()
{
    const Outcome outcome = Run({"login", "--service", Address(), "--token-file", PasswordFile()});
    ASSERT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
}

} // namespace Norlis::Test
