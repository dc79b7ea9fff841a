#include "UploadCommand.h"

#include "DocumentEntry.h"
#include "Text.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace Norlis::Terminal {

using PDF::Cloud::AbstractCloudManager;

UploadCommand::UploadCommand(const Environment& environment) : BatchCommand(environment, "Uploading")
{
    for (const QString& file : arguments.operands) {
        paths << QDir::cleanPath(QDir().absoluteFilePath(file));
    }
    paths.removeDuplicates();
}

void UploadCommand::Work()
{
    connect(&Session(), &Host::CloudSession::DocumentUploaded, this, &UploadCommand::OnUploaded);
    connect(&Session(), &Host::CloudSession::UploadCanceled, this, &UploadCommand::OnCanceled);
    connect(&Session(), &Host::CloudSession::LocalCopyRead, this, &UploadCommand::BeginKnown);
    connect(&Session().Cloud(), &AbstractCloudManager::UploadingProgressValueChanged, this,
            &UploadCommand::ShowProgress);

    const bool isAnyCopy = !arguments.asNew && std::any_of(paths.begin(), paths.end(), [this](const QString& path) {
        return Session().IsCopy(path);
    });
    if (isAnyCopy) {
        WithFreshList([this] { Begin(); }); // the comparison needs the current state of the cloud
    } else {
        Begin();
    }
}

bool UploadCommand::CancelJob(const QString& path)
{
    if (reading.contains(path)) {
        OnCanceled(path);
    } else {
        Session().CancelUpload(path);
    }
    return true;
}

void UploadCommand::Begin()
{
    QStringList newFiles;
    for (const QString& path : qAsConst(paths)) {
        Expect(path, QFileInfo(path).fileName());
        if (IsKnown(path)) {
            reading.insert(path);
            Session().ReadLocalCopy(path); // "unchanged" is said of what is in the file, not of its time stamp
        } else {
            newFiles << path;
        }
    }
    BeginNew(newFiles);
    EndIfDone();
}

void UploadCommand::BeginNew(const QStringList& files)
{
    if (!files.isEmpty()) {
        Session().Upload(files);
    }
}

void UploadCommand::BeginKnown(const QString& path, const QString& id)
{
    reading.remove(path);
    if (!IsExpected(path)) {
        return;
    }
    if (id.isEmpty()) {
        BeginNew({path});
        return;
    }
    const auto entry = EntryOf(Session(), id);
    using Status = PDF::FileInfo::CloudStatus;
    const auto state = entry ? entry->state : Status::NoSuchDocument;
    if (state == Status::InSync) {
        Succeed(path);
        Show("unchanged", path, id);
    } else if (state == Status::ChangedInCloud) {
        Fail(path, QStringLiteral("\"%1\" is newer in the cloud. Download it, or use --new to keep both").arg(path));
    } else if (state == Status::ChangedOnBothSides) {
        Fail(path,
             QStringLiteral("\"%1\" was changed both here and in the cloud. Use --new to keep both, or download the "
                            "other version to another folder, put your changes into it there and upload that file")
                 .arg(path));
    } else {
        // The session identifies the upload by the path in the list.
        const QString key = entry ? entry->path : path;
        updates.insert(key);
        if (key != path) {
            Expect(key, QFileInfo(path).fileName());
            Succeed(path);
        }
        Session().UploadChanges(id);
    }
}

void UploadCommand::OnUploaded(const QString& path, const QString& id)
{
    if (IsExpected(path)) {
        Succeed(path);
        Show(updates.contains(path) ? "updated" : "uploaded", path, id);
    }
}

void UploadCommand::Show(const QString& action, const QString& path, const QString& id)
{
    const auto entry = EntryOf(Session(), id);
    if (!entry) {
        return;
    }
    Shown().Note(*entry);
    if (output.IsJson()) {
        QJsonObject result = JsonOf(*entry);
        result["action"] = action;
        output.Json(QJsonDocument(result));
        return;
    }
    const QString file = QFileInfo(path).fileName();
    const QString newName = entry->name == file ? QString() : QStringLiteral(" as ") + Printable(entry->name);
    const QString what = action == "unchanged" ? QStringLiteral("already in the cloud, unchanged:") : action;
    output.Line(what + ' ' + Printable(file) + newName + "  " + Printable(id));
}

bool UploadCommand::IsKnown(const QString& path)
{
    return !arguments.asNew && !Session().DocumentAt(path).isEmpty();
}

} // namespace Norlis::Terminal
