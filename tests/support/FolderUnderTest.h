#pragma once

#include "Files.h"
#include "ServiceUnderTest.h"

#include <QTemporaryDir>
#include <QUrl>

namespace Norlis::Test {

/// A folder as a cloud.
class FolderUnderTest : public ServiceUnderTest {
public:
    FolderUnderTest();

    Social::OAuth2::AuthInfo Settings() override;
    void Put(const QString& name, const QByteArray& content) override;
    void PutLarge(const QString& name, qint64 size) override;
    std::optional<QByteArray> Get(const QString& name) override;
    void Take(const QString& name) override;
    QStringList Content() override;
    void Withdraw() override;
    void Restore() override;

    QString Folder() const;
    QString PathOf(const QString& name) const;

private:
    QTemporaryDir temporary;
};

} // namespace Norlis::Test
