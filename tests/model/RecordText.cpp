#include "RecordText.h"

namespace Norlis::Test {

namespace {

std::string TextOf(const std::map<PDF::FileInfo::PreviewSize, ioPath>& previews)
{
    std::string text;
    for (const auto& [size, path] : previews) {
        text += ' ' + PDF::FileInfo::previewSizetoString(size) + '=' + path.utf8string();
    }
    return '[' + text + ']';
}

std::string TextOf(const QDateTime& time)
{
    return time.toString(Qt::ISODateWithMs).toStdString();
}

} // namespace

std::string TextOf(const std::shared_ptr<PDF::FileInfo>& record)
{
    if (!record) {
        return "null";
    }
    std::string text = '"' + record->GetId() + "\" at \"" + record->GetPath().utf8string() + "\" " +
                       std::to_string(record->GetSize()) + " bytes, hash \"" + record->GetMd5Hash() +
                       "\", last synchronised \"" + record->GetCloudHashBeforeChange() + "\" " +
                       (record->IsSyncingInProgress() ? "syncing " : "") + TextOf(record->GetPreviewsSet());
    if (auto& cloud = record->GetRedactableCloudInfo()) {
        text += "; in the cloud \"" + cloud->GetId() + "\" named \"" + cloud->GetFileName() + "\" " +
                std::to_string(cloud->GetSize()) + " bytes, " + (cloud->IsPrivate() ? "private" : "public") + ' ' +
                cloud->GetDownloadUrl().toString().toStdString() + " created " + TextOf(cloud->GetCreatedAt()) +
                " modified " + TextOf(cloud->GetModifyTime()) + " lives " + std::to_string(cloud->GetLifeTime()) +
                " s, hash \"" + cloud->GetMd5Hash() + "\" " + TextOf(cloud->GetPreviewsSet());
    }
    return text;
}

} // namespace Norlis::Test
