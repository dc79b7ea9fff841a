#include "UploadCommand.h"

#include "DocumentEntry.h"
#include "Text.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace Norlis::Terminal {

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
    connect(&Session(), &Host::CloudSession::DocumentDownloaded, this, &UploadCommand::OnFetched);
    connect(&Session(), &Host::CloudSession::UploadProgress, this, &UploadCommand::ShowProgress);

    const bool isAnyCopy = !arguments.asNew && std::any_of(paths.begin(), paths.end(), [this](const QString& path) {
        return Session().IsCopy(path);
    });
    if (isAnyCopy || (!arguments.asNew && conflicts.ConcernTakenNames())) {
        WithFreshList([this] { Begin(); }); // the comparison needs the current state of the cloud
    } else {
        Begin();
    }
}

bool UploadCommand::CancelJob(const QString& path)
{
    if (CancelDecision(path)) {
        return true;
    }
    if (reading.contains(path)) {
        OnCanceled(path);
    } else {
        Session().CancelUpload(path);
        Session().CancelDownload(path); // where the version in the cloud is fetched
    }
    return true;
}

void UploadCommand::Begin()
{
    QStringList newFiles;
    for (const QString& path : qAsConst(paths)) {
        Expect(path, QFileInfo(path).fileName(), QFileInfo(path).size());
        if (IsKnown(path)) {
            reading.insert(path);
            Session().ReadLocalCopy(path); // "unchanged" is said of what is in the file, not of its time stamp
        } else if (!arguments.asNew && conflicts.ConcernTakenNames()) {
            OfferNew(path);
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
    } else if (state == Status::ChangedInCloud || state == Status::ChangedOnBothSides) {
        const bool isNewer = state == Status::ChangedInCloud;
        const QString problem =
            isNewer
                ? QStringLiteral("\"%1\" is newer in the cloud. Download it, or use --new to keep both").arg(path)
                : QStringLiteral("\"%1\" was changed both here and in the cloud. Use --new to keep both, or download "
                                 "the other version to another folder, put your changes into it there and upload "
                                 "that file")
                      .arg(path);
        Decide(path, problem.left(problem.indexOf(". ")), OnConflict::Fail,
               [=](OnConflict choice) { DecideKnown(path, id, problem, choice); });
    } else {
        updates.insert(JobOfCopy(path, id));
        Session().UploadChanges(id);
    }
}

QString UploadCommand::JobOfCopy(const QString& path, const QString& id)
{
    const auto entry = EntryOf(Session(), id);
    const QString key = entry ? entry->path : path;
    if (key != path) {
        Expect(key, QFileInfo(path).fileName(), QFileInfo(path).size());
        Succeed(path);
    }
    return key;
}

void UploadCommand::DecideKnown(const QString& path, const QString& id, const QString& problem, OnConflict choice)
{
    switch (choice) {
    case OnConflict::Both:
        JobOfCopy(path, id);
        Session().KeepBoth(id);
        break;
    case OnConflict::Mine:
        updates.insert(JobOfCopy(path, id));
        Session().ReplaceInCloud(id);
        break;
    case OnConflict::Theirs:
        Expect(id, QFileInfo(path).fileName());
        Succeed(path);
        Session().UseCloudVersion(id);
        break;
    case OnConflict::Ask:
    case OnConflict::Fail:
        Fail(path, problem);
        break;
    }
}

void UploadCommand::OfferNew(const QString& path)
{
    const QString id = Session().DocumentNamed(QFileInfo(path).fileName());
    if (id.isEmpty()) {
        BeginNew({path});
        return;
    }
    Decide(path, QStringLiteral("There is a document \"%1\" in the cloud already").arg(QFileInfo(path).fileName()),
           OnConflict::Both, [=](OnConflict choice) { DecideNew(path, id, choice); });
}

void UploadCommand::DecideNew(const QString& path, const QString& id, OnConflict choice)
{
    switch (choice) {
    case OnConflict::Both:
        BeginNew({path}); // with a number
        break;
    case OnConflict::Mine:
        updates.insert(path);
        Session().ReplaceWith(id, path);
        break;
    case OnConflict::Theirs:
        Succeed(path);
        Show("skipped", path, id);
        break;
    case OnConflict::Ask:
    case OnConflict::Fail:
        Fail(path, QStringLiteral("There is a document \"%1\" in the cloud already. Use --on-conflict=both to give the "
                                  "new one a number, or --on-conflict=mine to replace it")
                       .arg(QFileInfo(path).fileName()));
        break;
    }
}

void UploadCommand::OnFetched(const QString& id)
{
    if (IsExpected(id)) {
        const auto entry = EntryOf(Session(), id);
        Succeed(id);
        Show("downloaded", entry ? entry->path : id, id);
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
    if (action != "skipped") { // nobody has looked at that
        Shown().Note(*entry);
    }
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
