// The contract tests over a protocol of one's own.

#include "MemoryProtocol.h"

#include <NorlisTestKit/CloudUnderTest.h>

#include <QGuiApplication>

#include <gmock/gmock.h>

using namespace Norlis;

class MemoryCloudUnderTest : public TestKit::CloudUnderTest {
public:
    std::unique_ptr<PDF::Cloud::ICloudProtocol> MakeProtocol() override
    {
        return std::make_unique<MemoryProtocol>(cloud);
    }

    void Put(const QString& name, const QByteArray& content) override
    {
        cloud->Put(name, content);
    }

    std::optional<QByteArray> Get(const QString& name) override
    {
        const auto found = cloud->documents.find(name);
        return found == cloud->documents.end() ? std::nullopt : std::optional(found->second.content);
    }

    void Take(const QString& name) override
    {
        cloud->documents.erase(name);
    }

    QStringList Content() override
    {
        QStringList names;
        for (const auto& [name, document] : cloud->documents) {
            names << name;
        }
        return names; // sorted, as the map is
    }

    void Withdraw() override
    {
        cloud->isAway = true;
    }

    void Restore() override
    {
        cloud->isAway = false;
    }

    // In what it differs.

    bool HasPreviews() const override
    {
        return false;
    }

    bool WorksInTheBackground() const override
    {
        return false; // but in steps, from the event loop
    }

    qint64 LargeSize() const override
    {
        return 16 * 1024 * 1024; // it is all in memory
    }

private:
    const std::shared_ptr<MemoryCloud> cloud = std::make_shared<MemoryCloud>();
};

std::vector<TestKit::KindOfCloud> TestKit::KindsOfClouds()
{
    return {{"Memory", [] { return std::make_unique<MemoryCloudUnderTest>(); }}};
}

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // pictures need a QGuiApplication, but no display
    qputenv("LC_ALL", "C.UTF-8");            // names of files
    testing::InitGoogleMock(&argc, argv);
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
