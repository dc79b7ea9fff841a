#include "ServiceUnderTest.h"
#include "Client.h"
#include "Rounds.h"

#include <QDir>

namespace Norlis::Test {

Social::OAuth2::AuthInfo ServiceUnderTest::SettingsOf(const QString& user)
{
    auto settings = Settings();
    settings.dataFolder = data.filePath(user);
    QDir().mkpath(settings.dataFolder);
    return settings;
}

std::unique_ptr<PDF::Cloud::ICloudProtocol> ServiceUnderTest::MakeProtocol()
{
    return Test::MakeProtocol(SettingsOf(QString::number(++users)));
}

std::unique_ptr<PDF::Cloud::ICloudProtocol> ServiceUnderTest::MakeProtocolOfNextRun()
{
    return Test::MakeProtocol(SettingsOf("1"));
}

std::unique_ptr<PDF::Cloud::ICloudProtocol> ServiceUnderTest::MakeReplacingProtocol()
{
    auto settings = SettingsOf(QString::number(++users));
    settings.replaceableFiles = Social::OAuth2::ReplaceableFiles::All;
    return Test::MakeProtocol(settings);
}

bool ServiceUnderTest::PutAsOthers(const QString& name, const QByteArray& content)
{
    Put(name, content);
    return true;
}

bool ServiceUnderTest::TellsWritersApart() const
{
    return true;
}

int ServiceUnderTest::ManyDocuments() const
{
    return IsThorough() ? 10'000 : 3'000;
}

} // namespace Norlis::Test
