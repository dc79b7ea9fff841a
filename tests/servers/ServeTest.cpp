#include "WebDavServer.h"

#include <QProcess>
#include <QTcpSocket>
#include <QUrl>

#include <NorlisTestKit/Loopback.h>
#include <tests/support/Waiting.h>

#include <gtest/gtest.h>

namespace Norlis::Test {

using namespace TestKit;

/// The program that starts a server for use by hand.
class ServeTest : public testing::TestWithParam<ServerKind> {
protected:
    void Start()
    {
        program.start(NORLIS_SERVE, {QString::fromStdString(NameOf(GetParam())).toLower()});
        QByteArray output;
        while (output.count('\n') < 2 && program.waitForReadyRead(30'000)) {
            output += program.readAllStandardOutput();
        }
        const QByteArrayList lines = output.split('\n');
        ASSERT_EQ(lines.size(), 3) << program.readAllStandardError().constData();
        address = QUrl(QString::fromUtf8(lines[0]));
        password = lines[1];
    }

    bool Answers() const
    {
        const QByteArray answer =
            Exchange(static_cast<quint16>(address.port()),
                     "PROPFIND / HTTP/1.1\r\nHost: 127.0.0.1\r\nDepth: 0\r\nConnection: close\r\nAuthorization: " +
                         BasicAuthorization(address.userName().toUtf8(), password) + "\r\n\r\n");
        return answer.startsWith(TakesOnlyDigests(GetParam()) ? "HTTP/1.1 401" : "HTTP/1.1 207");
    }

    bool Listens() const
    {
        QTcpSocket socket;
        socket.connectToHost("127.0.0.1", static_cast<quint16>(address.port()));
        return socket.waitForConnected();
    }

    QProcess program;
    QUrl address;
    QByteArray password;
};
INSTANTIATE_TEST_SUITE_P(Kinds, ServeTest, testing::ValuesIn(TestedServerKinds()),
                         [](const auto& info) { return NameOf(info.param); });

TEST_P(ServeTest, ItServesUntilItIsAskedToEnd)
{
    Start();
    EXPECT_TRUE(Answers());
    program.terminate();
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_FALSE(Listens());
}

TEST_P(ServeTest, ItLeavesNoServerBehindWhenItIsKilled)
{
    Start();
    EXPECT_TRUE(Answers());
    program.kill();
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_TRUE(WaitUntil([this] { return !Listens(); }, 10'000));
}

} // namespace Norlis::Test
