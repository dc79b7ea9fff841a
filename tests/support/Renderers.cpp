#include "Renderers.h"

#include "Files.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <unistd.h>

namespace Norlis::Test {

QString FakeRenderers::Make(const QString& behaviour) const
{
    const QString path = folder.filePath(behaviour);
    const QString script = QStringLiteral("#!/bin/sh\nexec '%1' '%2' '%3'\n")
                               .arg(NORLIS_FAKE_RENDERER, behaviour, folder.filePath("requests"));
    WriteFile(path, script.toUtf8());
    EXPECT_TRUE(QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
    return path;
}

QStringList FakeRenderers::Requests() const
{
    const QString text = QString::fromUtf8(ReadFile(folder.filePath("requests")).value_or(QByteArray()));
    return text.split('\n', Qt::SkipEmptyParts);
}

std::vector<int> ChildProcesses(const QString& name)
{
    std::vector<int> found;
    for (const QString& entry : QDir("/proc").entryList(QDir::Dirs)) {
        const auto status = ReadFile("/proc/" + entry + "/stat"); // "1234 (name) S parent ..."
        if (entry.toInt() <= 0 || !status) {
            continue;
        }
        const QString text = QString::fromUtf8(*status);
        const int end = text.lastIndexOf(')');
        const QStringList rest = text.mid(end + 2).split(' ');
        const bool isChild = rest.value(1).toInt() == getpid() && rest.value(0) != "Z";
        if (isChild && QStringView(text).mid(text.indexOf('(') + 1).startsWith(QString(name.left(15) + ')'))) {
            found.push_back(entry.toInt());
        }
    }
    return found;
}

} // namespace Norlis::Test
