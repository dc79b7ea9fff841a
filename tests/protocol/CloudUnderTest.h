#pragma once

#include <contracts/OAuth2.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Norlis::Test {

/// A cloud that a test can also reach behind the protocol object's back. Every kind of service has one, and passes the
/// same tests.
class CloudUnderTest {
public:
    virtual ~CloudUnderTest() = default;

    /// With which a protocol object is constructed that uses the cloud.
    virtual Social::OAuth2::AuthInfo Settings() = 0;

    virtual void Put(const QString& name, const QByteArray& content) = 0;

    /// A document of that many zero bytes.
    virtual void PutLarge(const QString& name, qint64 size) = 0;

    virtual std::optional<QByteArray> Get(const QString& name) = 0;
    virtual void Take(const QString& name) = 0;

    /// Everything in the cloud, sorted, whether it is a document or a leftover of a transfer.
    virtual QStringList Content() = 0;

    /// Makes the cloud unreachable; Restore ends that.
    virtual void Withdraw() = 0;
    virtual void Restore() = 0;
};

struct KindOfCloud {
    std::string name;
    std::function<std::unique_ptr<CloudUnderTest>()> make;
};

KindOfCloud FolderCloud();

} // namespace Norlis::Test
