#include "Transfers.h"

#include "Texts.h"

#include <apps/common/PrintableText.h>
#include <base/Utf8.h>

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace Norlis::Window {

using Host::CloudProblem;
using Host::CloudSession;
using PDF::Cloud::AbstractCloudManager;

namespace {

constexpr int maxFinished = 50; // older ones are dropped

QString IdOf(const PDF::FileInfo& file)
{
    return QString::fromStdString(PDF::FileInfo(file).GetId()); // a copy, because its getters are not const
}

} // namespace

Transfers::Transfers(CloudSession& session, QObject* parent) : QAbstractListModel(parent), session(session)
{
    const auto& cloud = session.Cloud();
    connect(&cloud, &AbstractCloudManager::UploadingProgressValueChanged, this,
            [this](const QString& path, int percent) { SetPercent(Find(false, path), percent); });
    connect(&cloud, &AbstractCloudManager::DownloadingProgressValueChanged, this,
            [this](const std::shared_ptr<const PDF::FileInfo>& file, int percent) {
                SetPercent(Find(true, IdOf(*file)), percent);
            });
    connect(&session, &CloudSession::DocumentUploaded, this,
            [this](const QString& path) { Finish(Find(false, path), {}); });
    connect(&session, &CloudSession::DocumentDownloaded, this, [this](const QString& id, const QString& path) {
        const int row = Find(true, id);
        const bool opensWhenDone = row >= 0 && transfers[row].opensWhenDone;
        Finish(row, tr("Saved in %1").arg(QDir::toNativeSeparators(QFileInfo(path).absolutePath())));
        if (opensWhenDone) {
            emit OpenRequested(path);
        }
    });
    connect(&session, &CloudSession::UploadCanceled, this, [this](const QString& path) { Remove(Find(false, path)); });
    connect(&session, &CloudSession::DownloadCanceled, this, [this](const QString& id) { Remove(Find(true, id)); });
    connect(&session, &CloudSession::Failed, this, &Transfers::OnFailed);
}

void Transfers::Upload(const QStringList& paths)
{
    QStringList started;
    for (const QString& path : paths) {
        if (Find(false, path) < 0) { // otherwise it is being uploaded already
            AddRow({Kind::Upload, path, {}, Apps::Printable(QFileInfo(path).fileName()), {}, false});
            started.append(path);
        }
    }
    if (!started.isEmpty()) {
        session.Upload(started);
    }
}

void Transfers::UploadChanges(const QString& id)
{
    StartChanges(Kind::UploadChanges, id);
}

void Transfers::ReplaceInCloud(const QString& id)
{
    StartChanges(Kind::ReplaceInCloud, id);
}

void Transfers::StartChanges(Kind kind, const QString& id)
{
    const auto record = session.Documents().GetFileInfo(id);
    const QString path = record ? QString::fromStdString(record->GetPath().utf8string()) : QString();
    const QString subject = path.isEmpty() ? id : path;
    if (Find(false, subject) < 0) {
        const Transfer transfer = {kind, subject, id, NameOf(id), {}, false};
        AddRow(transfer);
        Start(transfer);
    }
}

void Transfers::Download(const QString& id, const QString& folder, bool opensWhenDone)
{
    if (Find(true, id) < 0) {
        const Transfer transfer = {Kind::Download, id, id, NameOf(id), folder, opensWhenDone};
        AddRow(transfer);
        Start(transfer);
    }
}

void Transfers::Cancel(int row)
{
    const Transfer& transfer = transfers.at(static_cast<std::size_t>(row));
    if (transfer.status != Status::Running) {
        return;
    }
    if (transfer.kind == Kind::Download) {
        session.CancelDownload(QString(transfer.subject)); // a copy, because cancelling changes the list
    } else {
        session.CancelUpload(QString(transfer.subject));
    }
}

void Transfers::TryAgain(int row)
{
    Transfer& transfer = transfers.at(static_cast<std::size_t>(row));
    if (transfer.status != Status::Failed || Find(transfer.kind == Kind::Download, transfer.subject) >= 0) {
        return;
    }
    if (transfer.kind == Kind::ReplaceInCloud) {
        // What the user has agreed to is known, and by now there may be yet another version in the cloud.
        transfer.kind = Kind::UploadChanges;
    }
    transfer.status = Status::Running;
    transfer.percent = 0;
    transfer.detail.clear();
    const Transfer again = transfer;
    Changed(row);
    emit CountsChanged();
    Start(again);
}

void Transfers::Clear()
{
    for (int row = rowCount() - 1; row >= 0; --row) {
        if (transfers[row].status != Status::Running) {
            Remove(row);
        }
    }
}

int Transfers::CountOf(Status status) const
{
    return static_cast<int>(
        std::count_if(transfers.begin(), transfers.end(), [=](const Transfer& each) { return each.status == status; }));
}

int Transfers::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(transfers.size());
}

QVariant Transfers::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const Transfer& transfer = transfers[index.row()];
    switch (role) {
    case Qt::DisplayRole:
        return transfer.name;
    case Qt::ToolTipRole:
        return ToolTipText(transfer.detail.isEmpty() ? QStringList(transfer.name)
                                                     : QStringList({transfer.name, transfer.detail}));
    case Qt::AccessibleTextRole: {
        const QString state = transfer.status == Status::Failed     ? tr("failed")
                              : transfer.status == Status::Finished ? tr("finished")
                                                                    : tr("%1%").arg(transfer.percent);
        const QString text = transfer.kind == Kind::Download ? tr("Download of %1: %2") : tr("Upload of %1: %2");
        return text.arg(transfer.name, state) + (transfer.detail.isEmpty() ? QString() : ". " + transfer.detail);
    }
    case KindRole:
        return static_cast<int>(transfer.kind);
    case StatusRole:
        return static_cast<int>(transfer.status);
    case PercentRole:
        return transfer.percent;
    case DetailRole:
        return transfer.detail;
    default:
        return {};
    }
}

void Transfers::AddRow(const Transfer& transfer)
{
    // This replaces an earlier attempt that failed.
    for (int row = rowCount() - 1; row >= 0; --row) {
        const Transfer& old = transfers[row];
        if (old.status == Status::Failed && old.kind == transfer.kind && old.subject == transfer.subject) {
            Remove(row);
        }
    }
    beginInsertRows({}, 0, 0);
    transfers.push_front(transfer);
    endInsertRows();
    emit CountsChanged();
}

void Transfers::Start(const Transfer& transfer)
{
    switch (transfer.kind) {
    case Kind::Upload:
        session.Upload({transfer.subject});
        break;
    case Kind::UploadChanges:
        session.UploadChanges(transfer.id);
        break;
    case Kind::ReplaceInCloud:
        session.ReplaceInCloud(transfer.id);
        break;
    case Kind::Download:
        session.Download(transfer.id, transfer.folder);
        break;
    }
}

int Transfers::Find(bool isDownload, const QString& subject) const
{
    const auto found = std::find_if(transfers.begin(), transfers.end(), [&](const Transfer& each) {
        return each.status == Status::Running && (each.kind == Kind::Download) == isDownload && each.subject == subject;
    });
    return found == transfers.end() ? -1 : static_cast<int>(found - transfers.begin());
}

void Transfers::SetPercent(int row, int percent)
{
    if (row >= 0 && transfers[row].percent != percent) {
        transfers[row].percent = percent;
        Changed(row);
    }
}

void Transfers::Finish(int row, const QString& detail)
{
    if (row < 0) {
        return;
    }
    transfers[row].status = Status::Finished;
    transfers[row].percent = 100;
    transfers[row].detail = detail;
    Changed(row);
    int finished = 0;
    for (int each = 0; each < rowCount(); ++each) {
        if (transfers[each].status == Status::Finished && ++finished > maxFinished) {
            Remove(each--);
        }
    }
    emit CountsChanged();
}

void Transfers::Remove(int row)
{
    if (row < 0) {
        return;
    }
    beginRemoveRows({}, row, row);
    transfers.erase(transfers.begin() + row);
    endRemoveRows();
    emit CountsChanged();
}

void Transfers::OnFailed(const CloudProblem& problem)
{
    const bool isDownload = problem.request == CloudProblem::Request::Download;
    if (!isDownload && problem.request != CloudProblem::Request::Upload) {
        return;
    }
    const int row = Find(isDownload, problem.subject);
    if (row < 0) {
        return;
    }
    transfers[row].status = Status::Failed;
    transfers[row].detail = ProblemDetail(problem);
    Changed(row);
    emit CountsChanged();
}

void Transfers::Changed(int row)
{
    emit dataChanged(index(row), index(row));
}

QString Transfers::NameOf(const QString& id) const
{
    const auto record = session.Documents().GetFileInfo(id);
    auto cloudInfo =
        record ? record->GetRedactableCloudInfo() : std::nullopt; // a copy, because its getters are not const
    return Apps::Printable(cloudInfo ? FromUtf8(cloudInfo->GetFileName()) : id);
}

} // namespace Norlis::Window
