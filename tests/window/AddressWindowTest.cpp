#include "ServerWindowTest.h"

#include <QAbstractButton>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

namespace Norlis::Test {

namespace {

using testing::HasSubstr;

/// What the sign-in page makes of an address, and which one it offers.
class AddressWindowTest : public ServerWindowTest {
protected:
    void LeaveWith(const QString& text)
    {
        Find<QLineEdit>("address")->setFocus();
        Type(Find<QLineEdit>("address"), text);
        QTest::keyClick(Find<QLineEdit>("address"), Qt::Key_Tab);
    }

    QString Address() const
    {
        return Find<QLineEdit>("address")->text();
    }
};

TEST_F(AddressWindowTest, AnAddressWithoutASchemeIsShownWithTheOneThatIsUsed)
{
    Open();
    LeaveWith("cloud.example/dav");
    EXPECT_EQ(Address(), "https://cloud.example/dav");
    LeaveWith("http://127.0.0.1:8080/dav");
    EXPECT_EQ(Address(), "http://127.0.0.1:8080/dav");
    LeaveWith(" ");
    EXPECT_EQ(Address(), "");
}

TEST_F(AddressWindowTest, WhoForgetsThatAServerOnThisComputerUsesNoEncryptionIsTold)
{
    QTcpServer plain;
    ASSERT_TRUE(plain.listen(QHostAddress::LocalHost));
    QObject::connect(&plain, &QTcpServer::newConnection, &plain, [&plain] {
        QTcpSocket* const socket = plain.nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::readyRead, socket,
                         [socket] { socket->write("HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\n\r\n"); });
    });
    const QString address = QString("127.0.0.1:%1/dav").arg(plain.serverPort());
    Open();
    Type(Find<QLineEdit>("address"), address);
    ClickButton("Sign In");
    ASSERT_TRUE(WaitUntil([&] { return !Message().isEmpty(); }));
    EXPECT_THAT(Message().toStdString(), HasSubstr("Check the address: without encryption it begins with http://."));
    EXPECT_EQ(Address(), "https://" + address);
    EXPECT_EQ(Find<QLineEdit>("address")->selectedText(), Address());
}

TEST_F(AddressWindowTest, WhoHasSignedOutIsOfferedTheAddressAndTheUserButNotThePassword)
{
    SignIn();
    Action("Sign Out")->trigger();
    ASSERT_TRUE(WaitUntil([&] { return Find<QLineEdit>("address") != nullptr; }));
    Close();
    Open();
    ASSERT_TRUE(Find<QLineEdit>("address"));
    EXPECT_EQ(Address(), server.Address().toDisplayString(QUrl::RemoveUserInfo));
    EXPECT_EQ(Find<QLineEdit>("user")->text(), server.User());
    EXPECT_EQ(Find<QLineEdit>("password")->text(), "");
    EXPECT_TRUE(Find<QLineEdit>("password")->hasFocus());
}

TEST_F(AddressWindowTest, WhoHasSignedOutOfAFolderIsOfferedItAgain)
{
    OpenCloud();
    ASSERT_TRUE(WaitUntil([&] { return Action("Sign Out") && Action("Sign Out")->isEnabled(); }));
    Action("Sign Out")->trigger();
    ASSERT_TRUE(WaitUntil([&] { return Find<QLineEdit>("folder") != nullptr; }));
    Close();
    Open();
    ASSERT_TRUE(Find<QLineEdit>("folder")) << "it would be signed in to";
    EXPECT_EQ(Find<QLineEdit>("folder")->text(), Cloud());
}

} // namespace

} // namespace Norlis::Test
