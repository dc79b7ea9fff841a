#pragma once

#include "SecretWatch.h"
#include <testkit/contract/Printing.h>
#include <tests/support/Client.h>
#include <tests/support/Files.h>

#include <NorlisTestKit/FaultServer.h>

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

namespace Norlis::Test {

using namespace TestKit;

/// A server that does what a test wants, and a folder for what its user keeps and sends.
template <typename Server = FaultServer>
class ServiceTest : public testing::Test {
protected:
    static constexpr int shortTimeout = 600; ///< milliseconds; for servers that hang

    ServiceTest()
    {
        settings.serviceUrl = server.Address();
        settings.cacheFolder = folder.filePath("cache");
    }

    void TearDown() override
    {
        ExpectNoSecretBelow(folder.path());
    }

    QString Local(const QString& name) const
    {
        return folder.filePath(name);
    }

    QString LocalFile(const QString& name, const QByteArray& content) const
    {
        WriteFile(Local(name), content);
        return Local(name);
    }

    Server server;
    QTemporaryDir folder;
    Social::OAuth2::AuthInfo settings;
};

/// With somebody who is signed in.
template <typename Server = FaultServer>
class SignedInServiceTest : public ServiceTest<Server> {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(client.SignIn());
        this->server.ForgetRequests();
    }

    /// Puts a document onto the server and returns its id.
    QString Put(const QString& name, const QByteArray& content)
    {
        this->server.Put(name, content);
        return client.Entry(name).id;
    }

    Client client{this->settings, this->server.Password()};
};

/// The failure that a client was told of last; an empty one when there was none.
inline Social::OAuth2::Failure LastFailure(const Client& client)
{
    return client.failures.empty() ? Social::OAuth2::Failure() : client.failures.back();
}

inline std::string LastReason(const Client& client)
{
    return LastFailure(client).reason.toStdString();
}

inline std::string LastAdvice(const Client& client)
{
    return LastFailure(client).advice.toStdString();
}

} // namespace Norlis::Test
