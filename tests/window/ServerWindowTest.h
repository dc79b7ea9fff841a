#pragma once

#include "WindowTest.h"

#include <NorlisTestKit/FaultServer.h>

#include <QLineEdit>

namespace Norlis::Test {

/// The window over a server, which may misbehave.
class ServerWindowTest : public WindowTest {
protected:
    void FillIn(const QString& password)
    {
        Type(Find<QLineEdit>("address"), server.Address().toDisplayString(QUrl::RemoveUserInfo));
        Type(Find<QLineEdit>("user"), server.User());
        Type(Find<QLineEdit>("password"), password);
    }

    void SignIn()
    {
        Open();
        FillIn(server.Password());
        ClickButton("Sign In");
        ASSERT_TRUE(WaitUntil([&] { return Action("Upload…") && Action("Upload…")->isEnabled(); }));
    }

    TestKit::FaultServer server;
};

} // namespace Norlis::Test
