#pragma once

#include <tests/support/Client.h>
#include <tests/support/FolderUnderTest.h>

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Norlis::Test {

/// What holds for a folder as a cloud and for no other.
class FolderCloudTest : public testing::Test {
protected:
    QStringList ListedNames(Client& user)
    {
        const auto list = user.List();
        EXPECT_TRUE(list->Succeeds());
        QStringList names;
        for (const CloudFile& file : qAsConst(list->payload)) {
            names << file.name;
        }
        return names;
    }

    std::string LastReason() const
    {
        return client.failures.empty() ? std::string() : client.failures.back().reason.toStdString();
    }

    QString Local(const QString& name, const QByteArray& content)
    {
        WriteFile(folder.filePath(name), content);
        return folder.filePath(name);
    }

    FolderUnderTest cloud;
    Client client{cloud.Settings()};
    QTemporaryDir folder;
};

} // namespace Norlis::Test
