#include "Records.h"

#include <base/Utf8.h>

namespace Norlis::Host {

namespace {

/// The getters of a record are not declared const, although they change nothing.
PDF::FileInfo& Readable(const PDF::FileInfo& record)
{
    return const_cast<PDF::FileInfo&>(record);
}

} // namespace

QString IdOf(const PDF::FileInfo& record)
{
    return QString::fromStdString(Readable(record).GetId());
}

QString NameOf(const PDF::FileInfo& record)
{
    return FromUtf8(Readable(record).GetRedactableCloudInfo()->GetFileName());
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
