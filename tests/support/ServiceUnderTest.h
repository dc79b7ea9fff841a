#pragma once

#include <NorlisTestKit/CloudUnderTest.h>

#include <contracts/OAuth2.h>

#include <QTemporaryDir>

namespace Norlis::Test {

using TestKit::KindOfCloud;

/// A cloud that our own protocol object uses. Every kind of service has one, and passes the same tests.
class ServiceUnderTest : public TestKit::CloudUnderTest {
public:
    /// For constructing a protocol object that uses the cloud.
    virtual Social::OAuth2::AuthInfo Settings() = 0;

    /// The same, for one that remembers what those of the same user have noted.
    Social::OAuth2::AuthInfo SettingsOf(const QString& user);

    std::unique_ptr<PDF::Cloud::ICloudProtocol> MakeProtocol() override;
    std::unique_ptr<PDF::Cloud::ICloudProtocol> MakeProtocolOfNextRun() override;
    std::unique_ptr<PDF::Cloud::ICloudProtocol> MakeReplacingProtocol() override;

    /// As somebody with another program, who keeps off what is locked, if the cloud has locks. False when it is
    /// refused.
    virtual bool PutAsOthers(const QString& name, const QByteArray& content);

    /// Of two who replace or remove a document in the very same moment, one is refused.
    virtual bool TellsWritersApart() const;

    int ManyDocuments() const override;

private:
    const QTemporaryDir data;
    int users = 0;
};

} // namespace Norlis::Test
