#pragma once

#include "Client.h"
#include "Files.h"
#include "Printing.h"

#include <NorlisTestKit/CloudUnderTest.h>

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <ostream>

namespace Norlis::TestKit {

/// A cloud, a client that is about to use it, and a local folder for uploads and downloads. What holds for every kind
/// of cloud is tested with this.
class ContractTest : public testing::TestWithParam<KindOfCloud> {
protected:
    using MakeProtocol = std::unique_ptr<PDF::Cloud::ICloudProtocol> (CloudUnderTest::*)();

    /// \param make of the cloud: what makes the client's protocol
    explicit ContractTest(MakeProtocol make = &CloudUnderTest::MakeProtocol)
        : cloud(GetParam().make()),
          client((*cloud.*make)(), cloud->Token())
    {
    }

    void TearDown() override
    {
        if (HasFailure()) {
            const std::size_t count = client.failures.size();
            for (std::size_t index = count > 20 ? count - 20 : 0; index < count; ++index) {
                const Social::OAuth2::Failure& failure = client.failures[index];
                std::cerr << qPrintable(failure.what) << ' ' << qPrintable(failure.document) << ": "
                          << qPrintable(failure.reason) << '\n';
            }
            std::cerr << cloud->Log().constData();
        }
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

    /// Runs the event loop until all earlier requests have been handled.
    void LetThingsSettle()
    {
        ASSERT_TRUE(client.Info("a document that is not there")->Fails());
        QCoreApplication::processEvents();
    }

    /// Another user of the cloud.
    std::unique_ptr<Client> Another() const
    {
        return std::make_unique<Client>(cloud->MakeProtocol(), cloud->Token());
    }

    /// The size of a file whose transfer is to take a while.
    qint64 Large(qint64 size) const
    {
        return std::min(size, cloud->LargeSize());
    }

    /// Of a document, as long as the cloud takes it.
    QString LongName() const
    {
        return QString("\u00e4").repeated((cloud->LongestName() - 5) / 2) + "x.pdf";
    }

    /// What is listed as the hash of a document that somebody else has put there.
    testing::Matcher<QString> IsForeignHash(const QByteArray& content) const
    {
        if (cloud->HashesForeignDocuments()) {
            return Md5Of(content);
        }
        return testing::Truly([](const QString& hash) { return hash.startsWith("version:"); });
    }

    /// After the client's destruction, which does not wait for a server: the next sign-in does the rest.
    /// \param whole a document that may be there, since it may have got its name already
    void ExpectNothingIsLeft(const QString& whole = {}) const
    {
        const auto isClean = [&] { return cloud->Content().isEmpty() || cloud->Content() == QStringList(whole); };
        if (!cloud->IsQuietAfterDestruction()) {
            Client next(cloud->MakeProtocolOfNextRun(), cloud->Token());
            ASSERT_TRUE(next.SignIn());
            EXPECT_TRUE(WaitUntil(isClean));
        }
        EXPECT_TRUE(isClean()) << cloud->Content().join(' ').toStdString();
    }

    std::unique_ptr<CloudUnderTest> cloud;
    Client client;
    QTemporaryDir folder;
};

/// The client is signed in.
class SignedInContractTest : public ContractTest {
protected:
    using ContractTest::ContractTest;

    void SetUp() override
    {
        ASSERT_TRUE(client.SignIn());
    }

    /// Puts a document into the cloud and returns its id.
    QString Put(const QString& name, const QByteArray& content)
    {
        cloud->Put(name, content);
        return client.Entry(name).id;
    }
};

/// Runs the tests of a fixture over every kind of cloud that the program tests.
#define NORLIS_FOR_EVERY_CLOUD(Fixture)                                                                                \
    INSTANTIATE_TEST_SUITE_P(Clouds, Fixture, testing::ValuesIn(Norlis::TestKit::KindsOfClouds()),                     \
                             [](const auto& info) { return info.param.name; })

/// How GoogleTest prints it.
inline void PrintTo(const KindOfCloud& kind, std::ostream* stream)
{
    *stream << kind.name;
}
} // namespace Norlis::TestKit
