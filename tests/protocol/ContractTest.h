#pragma once

#include "Client.h"
#include "CloudUnderTest.h"
#include "Files.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

namespace Norlis::Test {

/// A cloud, somebody who is about to use it, and a local folder to send from and to fetch into. What holds for every
/// kind of cloud is tested over this.
class ContractTest : public testing::TestWithParam<KindOfCloud> {
protected:
    ContractTest() : cloud(GetParam().make()), client(cloud->Settings()) {}

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

    /// Runs the event loop until everything that was asked for before has been dealt with.
    void LetThingsSettle()
    {
        ASSERT_TRUE(client.Info("a document that is not there")->Fails());
        QCoreApplication::processEvents();
    }

    std::unique_ptr<CloudUnderTest> cloud;
    Client client;
    QTemporaryDir folder;
};

/// Signed in already.
class SignedInContractTest : public ContractTest {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(client.SignIn());
    }
};

/// Runs the tests of a fixture over every kind of cloud.
#define NORLIS_FOR_EVERY_CLOUD(Fixture)                                                                                \
    INSTANTIATE_TEST_SUITE_P(Clouds, Fixture, testing::Values(Norlis::Test::FolderCloud()),                            \
                             [](const auto& info) { return info.param.name; })

} // namespace Norlis::Test

/// How GoogleTest shows texts and kinds of clouds.
namespace Norlis::Test {
inline void PrintTo(const KindOfCloud& kind, std::ostream* stream)
{
    *stream << kind.name;
}
} // namespace Norlis::Test

inline void PrintTo(const QString& text, std::ostream* stream)
{
    *stream << '"' << text.toStdString() << '"';
}
