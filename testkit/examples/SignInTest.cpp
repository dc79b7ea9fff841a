// A host's sign-in, over the real network code, to a WebDAV server that misbehaves.

#include <NorlisCloud/NorlisCloudManager.h>
#include <NorlisCloud/NorlisCloudProtocolProxy.h>
#include <NorlisTestKit/CountingHashCalculator.h>
#include <NorlisTestKit/FakeFileSystem.h>
#include <NorlisTestKit/FaultServer.h>
#include <NorlisTestKit/FixedAccountSettings.h>

#include <QTest>

using namespace Norlis;
using Cloud = PDF::Cloud::NorlisCloudManager;

struct SignIn : QObject { // the host's: what it tells the user in the end
    SignIn(const QUrl& address, const QString& password)
    {
        Social::OAuth2::AuthInfo authInfo{address};
        authInfo.silenceTimeout = 300; // milliseconds
        authInfo.onFailure = [this](const auto& failure) { reason = failure.reason; };
        cloud = std::make_unique<Cloud>(std::make_shared<PDF::Cloud::NorlisCloudProtocolProxy>(authInfo, "editor"),
                                        std::make_shared<TestKit::CountingHashCalculator>(),
                                        std::make_shared<TestKit::FakeFileSystem>(),
                                        std::make_shared<TestKit::FixedAccountSettings>());
        connect(cloud.get(), &Cloud::AuthorizationCompleted, this, [this] { text = "Welcome"; });
        connect(cloud.get(), &Cloud::AuthorizationFailed, this, [this] { text = "No entry: " + reason; });
        cloud->Authorization(password);
    }
    std::unique_ptr<Cloud> cloud;
    QString reason, text;
};

class SignInTest : public QObject {
    Q_OBJECT
private slots:
    void LetsTheUserIn()
    {
        TestKit::FaultServer server;
        SignIn signIn(server.Address(), server.Password());
        QTRY_COMPARE(signIn.text, QString("Welcome"));
    }
    void GivesUpOnAServerThatHangs()
    {
        TestKit::FaultServer server;
        server.Misbehave(TestKit::When("*").Always(), TestKit::Hangs());
        SignIn signIn(server.Address(), server.Password());
        QTRY_VERIFY(signIn.text.startsWith("No entry: "));
    }
    void DoesNotRepeatThePassword()
    {
        TestKit::FaultServer server;
        server.Misbehave(TestKit::When("*").Always(), TestKit::EchoesTheCredentials(403));
        SignIn signIn(server.Address(), server.Password());
        QTRY_VERIFY(signIn.text.startsWith("No entry: "));
        QVERIFY2(!signIn.text.contains(server.Password()), "the password is on the screen");
    }
};

QTEST_GUILESS_MAIN(SignInTest)
#include "SignInTest.moc"
