#include "CloudManagerBench.h"

#include <QFile>

namespace Norlis::Test {

CloudManagerBench::CloudManagerBench()
{
    Use<NorlisCloudManager>();
}

QString CloudManagerBench::Write(const QString& name, const QByteArray& content) const
{
    QFile written(folder.filePath(name));
    EXPECT_TRUE(written.open(QIODevice::WriteOnly));
    written.write(content);
    return written.fileName();
}

qint64 CloudManagerBench::StartAuthorization()
{
    manager->Authorization(token);
    return protocol->LastId("auth");
}

qint64 CloudManagerBench::StartFilesList()
{
    manager->RetrieveFilesList();
    return protocol->LastId("retriveFileList");
}

qint64 CloudManagerBench::StartUpload()
{
    manager->Upload(path);
    return protocol->LastId("uploadFile");
}

qint64 CloudManagerBench::StartDownload()
{
    manager->Download(file, directory);
    return protocol->LastId("downloadFile");
}

qint64 CloudManagerBench::StartRemoval()
{
    manager->RemoveFile(file);
    return protocol->LastId("deleteFile");
}

qint64 CloudManagerBench::StartPreview()
{
    manager->RetrieveFilePreview(file, FileInfo::PreviewSize::Small, {40, 40});
    return protocol->LastId("retrievePreview");
}

qint64 CloudManagerBench::StartQuota()
{
    manager->UserQuota();
    return protocol->LastId("userQuota");
}

void CloudManagerTest::TearDown()
{
    for (const auto& source : log.Sources()) {
        EXPECT_EQ(source, "library/NorlisCloud/NorlisCloudManager.cpp");
    }
}

} // namespace Norlis::Test
