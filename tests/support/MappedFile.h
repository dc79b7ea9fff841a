#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <gtest/gtest.h>

#include <cstring>

namespace Norlis::Test {

/// A file that another program changes through a memory map. The first change gives the file a new time stamp; those
/// that follow while the map is open do not.
class MappedFile {
public:
    explicit MappedFile(const QString& path) : file(path)
    {
        EXPECT_TRUE(file.open(QFile::ReadWrite)) << path.toStdString();
        map = file.map(0, file.size());
        EXPECT_TRUE(map);
        Write(file.readAll()); // with which the time stamp is that of the map
    }

    void Write(const QByteArray& content)
    {
        ASSERT_EQ(content.size(), file.size());
        std::memcpy(map, content.constData(), static_cast<std::size_t>(content.size()));
    }

private:
    QFile file;
    uchar* map = nullptr;
};

} // namespace Norlis::Test
