#include "Records.h"

#include <base/Utf8.h>

namespace Norlis::Host {

QString IdOf(const PDF::FileInfo& record)
{
    return QString::fromStdString(PDF::FileInfo(record).GetId());
}

QString NameOf(const PDF::FileInfo& record)
{
    return FromUtf8(PDF::FileInfo(record).GetRedactableCloudInfo()->GetFileName());
}

ioPath ToPath(const QString& text)
{
    return ioPath(text.toStdString());
}

QString ToText(const ioPath& path)
{
    return QString::fromStdString(path.utf8string());
}

} // namespace Norlis::Host
