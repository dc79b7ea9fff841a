#pragma once

#include <testkit/contract/Printing.h>
#include <tests/support/Client.h>
#include <tests/support/Files.h>

#include <NorlisTestKit/FaultServer.h>

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>

namespace Norlis::Test {

using namespace TestKit;

/// Bytes of which no part is like another, so that a file that was put together wrongly shows.
inline QByteArray Pattern(int size, quint32 seed = 1)
{
    QByteArray content(size, '\0');
    for (char& byte : content) {
        seed = seed * 1664525 + 1013904223;
        byte = static_cast<char>(seed >> 24);
    }
    return content;
}

/// A server that does what a test wants, somebody who is signed in to it, and a local folder to send from and to fetch
/// into.
template <typename Server = FaultServer>
class TransferFaultTest : public testing::Test {
protected:
    static constexpr int usualTimeout = 60'000;
    static constexpr int shortTimeout = 600; ///< for servers that hang

    /// \param timeout in milliseconds
    explicit TransferFaultTest(int timeout = usualTimeout) : client(Settings(timeout), server.Password()) {}

    void SetUp() override
    {
        ASSERT_TRUE(client.SignIn());
    }

    void TearDown() override
    {
        if (!HasFailure()) {
            return;
        }
        for (const auto& failure : client.failures) {
            std::cerr << qPrintable(failure.what) << ' ' << qPrintable(failure.document) << ": "
                      << qPrintable(failure.reason) << '\n';
        }
        for (const SeenRequest& request : server.Requests()) {
            std::cerr << request.method.constData() << ' ' << request.target.constData() << " -> " << request.status
                      << '\n';
        }
        std::cerr << qPrintable(server.Names().join('\n')) << '\n';
    }

    Social::OAuth2::AuthInfo Settings(int timeout = usualTimeout) const
    {
        Social::OAuth2::AuthInfo settings;
        settings.serviceUrl = server.Address();
        settings.silenceTimeout = timeout;
        settings.dataFolder = data.path();
        settings.replaceableFiles = Social::OAuth2::ReplaceableFiles::All;
        return settings;
    }

    /// Lets the client find out what it does once only with a server, so that what follows is one upload's own traffic.
    void LearnTheServer()
    {
        const auto upload = client.Upload(LocalFile("first.pdf", "first"));
        ASSERT_TRUE(upload->Succeeds());
        ASSERT_TRUE(client.Remove(upload->payload.id)->Succeeds());
        server.ForgetRequests();
    }

    /// Puts a document onto the server and returns its id.
    QString Put(const QString& name, const QByteArray& content)
    {
        server.Put(name, content);
        return client.Entry(name).id;
    }

    QString Local(const QString& name) const
    {
        return folder.filePath(name);
    }

    /// Writes a local file and returns its path.
    QString LocalFile(const QString& name, const QByteArray& content) const
    {
        WriteFile(Local(name), content);
        return Local(name);
    }

    /// Whatever the request says.
    static Misbehaviour OverwritesAnyway()
    {
        return {[](Wire& wire) {
            ServerRequest request = wire.Request();
            request.headers.Set("Overwrite", "T");
            wire.Send(wire.Do(request).Bytes());
            wire.Finish();
        }};
    }

    /// Of the only request that failed.
    Social::OAuth2::Failure Failure() const
    {
        EXPECT_EQ(client.failures.size(), 1U);
        return client.failures.empty() ? Social::OAuth2::Failure() : client.failures.back();
    }

    std::string Reason() const
    {
        return Failure().reason.toStdString();
    }

    /// It fails without a word about a document and without having claimed to be complete.
    void ExpectFailure(const AnswerPtr<Social::NorlisCloudSharingResult>& upload) const
    {
        EXPECT_TRUE(upload->Fails());
        EXPECT_EQ(upload->payload.id, QString());
        EXPECT_THAT(upload->percents, testing::Not(testing::Contains(100)));
    }

    /// What is on the server becomes just this.
    void ExpectOnServer(const QStringList& names) const
    {
        WaitUntil([&] { return server.Names() == names; }, 10'000);
        EXPECT_EQ(server.Names(), names);
    }

    Server server;
    QTemporaryDir data; ///< of all clients
    QTemporaryDir folder;
    Client client;
};

} // namespace Norlis::Test
