#pragma once

#include "ProgramTest.h"

#include <NorlisTestKit/FaultServer.h>

namespace Norlis::Test {

using namespace TestKit;

/// As ProgramTest, over a WebDAV server as the cloud.
class ServerTest : public ProgramTest {
protected:
    /// The server's address with the user in it, as the user would type it.
    QString Address() const;

    /// A file that holds the user's password, and no line end.
    QString PasswordFile();

    void SignIn();

    FaultServer server;
};

} // namespace Norlis::Test
