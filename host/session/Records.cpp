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

bool IsMd5(const std::string& cloudHash)
{
    constexpr std::size_t length = 32;
    return cloudHash.size() == length && cloudHash.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
}

void SetCloudHash(PDF::FileInfo& record, const std::string& cloudHash)
{
    auto& cloudInfo = record.GetRedactableCloudInfo().value();
    const auto previews = cloudInfo.GetPreviewsSet();
    cloudInfo = PDF::FileInfo::CloudInfo(cloudInfo.GetId(), cloudInfo.GetFileName(), cloudInfo.GetSize(),
                                         cloudInfo.IsPrivate(), cloudInfo.GetDownloadUrl(), cloudInfo.GetCreatedAt(),
                                         cloudInfo.GetModifyTime(), cloudInfo.GetLifeTime(), cloudHash);
    cloudInfo.SetPreviewsSet(previews);
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
