#include "Transfers.h"

#include <apps/common/PrintableText.h>
#include <apps/window/texts/KnownDocuments.h>
#include <apps/window/texts/Texts.h>
#include <base/Utf8.h>
#include <host/session/CloudFacts.h>

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace Norlis::Window {

using Host::CloudProblem;
using Host::CloudSession;
using Social::OAuth2::FailureKind;

namespace {

constexpr int maxFinished = 50; // older ones are dropped

} // namespace

Transfers::Transfers(CloudSession& session, QObject* parent) : QAbstractListModel(parent), session(session)
{
    clock.start();
    connect(&session, &CloudSession::UploadProgress, this,
            [this](const QString& path, int percent) { SetPercent(Find(false, path), percent); });
    connect(&session, &CloudSession::DownloadProgress, this,
            [this](const QString& id, int percent) { SetPercent(Find(true, id), percent); });
    connect(&session, &CloudSession::DocumentUploaded, this, [this](const QString& path, const QString& id) {
        const int row = Find(false, path);
        if (row >= 0 && (transfers[row].kind == Kind::Upload || transfers[row].kind == Kind::KeepBoth)) {
            emit DocumentAdded(id);
        }
        const bool isRenamed = row >= 0 && NameOf(this->session, id) != transfers[row].name;
        Finish(row, isRenamed ? tr("In the cloud as “%1”").arg(NameOf(this->session, id)) : tr("In the cloud"));
    });
    connect(&session, &CloudSession::DocumentDownloaded, this, [this](const QString& id, const QString& path) {
        const int row = Find(true, id);
        const bool opensWhenDone = row >= 0 && transfers[row].opensWhenDone;
        const bool isToBeViewed = path.startsWith(this->session.ViewingFolder({}));
        Finish(row, isToBeViewed ? tr("Ready to be looked at")
                                 : tr("Saved in %1").arg(QDir::toNativeSeparators(QFileInfo(path).absolutePath())));
        if (opensWhenDone) {
            emit OpenRequested(path);
        }
    });
    connect(&session, &CloudSession::UploadWaiting, this,
            [this](const QString& path) { SetWaiting(Find(false, path)); });
    connect(&session, &CloudSession::DownloadWaiting, this, [this](const QString& id) { SetWaiting(Find(true, id)); });
    connect(&session, &CloudSession::UploadCanceled, this,
            [this](const QString& path) { EndWithout(Find(false, path), Status::Canceled); });
    connect(&session, &CloudSession::DownloadCanceled, this,
            [this](const QString& id) { EndWithout(Find(true, id), Status::Canceled); });
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
    const QString path = PathOf(id);
    Enter({kind, path.isEmpty() ? id : path, id, NameOf(session, id), {}, false});
}

void Transfers::ReplaceWith(const QString& id, const QString& path)
{
    Enter({Kind::ReplaceWith, path, id, NameOf(session, id), {}, false});
}

void Transfers::KeepBoth(const QString& id)
{
    StartChanges(Kind::KeepBoth, id);
}

void Transfers::UseCloudVersion(const QString& id)
{
    const QString path = PathOf(id);
    Enter({Kind::UseCloudVersion, id, id, NameOf(session, id), path.isEmpty() ? QString() : QFileInfo(path).path(),
           false});
}

void Transfers::Enter(const Transfer& transfer)
{
    if (Find(IsDownload(transfer), transfer.subject) < 0) {
        AddRow(transfer);
        Start(transfer);
    }
}

void Transfers::Download(const QString& id, const QString& folder)
{
    Enter({Kind::Download, id, id, NameOf(session, id), folder, false});
}

void Transfers::DownloadBeside(const QString& id, const QString& folder, bool opensWhenDone)
{
    Enter({Kind::DownloadBeside, id, id, NameOf(session, id), folder, opensWhenDone});
}

void Transfers::Cancel(int row)
{
    const Transfer& transfer = transfers.at(static_cast<std::size_t>(row));
    if (HasEnded(transfer)) {
        return;
    }
    if (IsDownload(transfer)) {
        session.CancelDownload(QString(transfer.subject)); // a copy, because cancelling changes the list
    } else {
        session.CancelUpload(QString(transfer.subject));
    }
}

void Transfers::TryAgain(int row)
{
    Transfer& transfer = transfers.at(static_cast<std::size_t>(row));
    if ((transfer.status != Status::Failed && transfer.status != Status::Canceled) ||
        Find(IsDownload(transfer), transfer.subject) >= 0) {
        return;
    }
    const bool hasLeftOut = transfer.kind == Kind::ReplaceInCloud || transfer.kind == Kind::ReplaceWith ||
                            transfer.kind == Kind::UseCloudVersion; // a version that the user gave up
    const bool isToBeDecided =
        ActionFor(transfer) == Action::Decide || (hasLeftOut && transfer.versions != VersionsOf(transfer.id));
    if (isToBeDecided && session.Facts(transfer.id)) {
        const QString file = transfer.kind == Kind::ReplaceWith ? transfer.subject : QString();
        emit DecisionNeeded(QString(transfer.id), file, QString(transfer.folder)); // copies: the list may change
        return;
    }
    if (CountOfActive() == 0) {
        batch = {};
    }
    ++batch.count;
    batch.size += transfer.size;
    SetStatus(transfer, Status::Queued);
    transfer.percent = 0;
    transfer.meter = {};
    transfer.detail.clear();
    transfer.details.clear();
    const Transfer again = transfer;
    Changed(row);
    emit CountsChanged();
    Start(again);
}

void Transfers::Clear()
{
    for (int row = rowCount() - 1; row >= 0; --row) {
        if (HasEnded(transfers[row])) {
            Remove(row);
        }
    }
    uploaded = 0;
    downloaded = 0;
}

QStringList Transfers::UnsentFiles() const
{
    QStringList paths;
    for (const Transfer& each : transfers) {
        if (each.kind == Kind::Upload && each.status != Status::Finished && each.status != Status::Canceled) {
            paths.append(each.subject);
        }
    }
    return paths;
}

bool Transfers::IsActive(const QString& id) const
{
    return std::any_of(transfers.begin(), transfers.end(),
                       [&](const Transfer& each) { return !HasEnded(each) && each.id == id; });
}

int Transfers::CountOf(Status status) const
{
    return counts.at(static_cast<std::size_t>(status));
}

int Transfers::CountOfActive() const
{
    return active.size();
}

QString Transfers::SuccessText() const
{
    QStringList parts;
    if (uploaded > 0) {
        parts.append(tr("%n document(s) uploaded", nullptr, uploaded));
    }
    if (downloaded > 0) {
        parts.append(tr("%n document(s) downloaded", nullptr, downloaded));
    }
    return parts.join(", ");
}

QString Transfers::ProgressOfAll() const
{
    const qint64 now = clock.elapsed();
    const auto running = std::find_if(transfers.begin(), transfers.end(),
                                      [](const Transfer& each) { return each.status == Status::Running; });
    const bool isOneLeft = running != transfers.end() && CountOfActive() == 1; // which must not contradict its row
    const auto& meter = isOneLeft ? running->meter : batch.meter;
    return tr("%1 of %2").arg(batch.done).arg(batch.count) + " · " +
           ProgressText(batch.transferred, batch.size, meter.Rate(now),
                        meter.TimeLeft(batch.size - batch.transferred, now));
}

QString Transfers::ProgressOf(const Transfer& transfer) const
{
    const qint64 now = clock.elapsed();
    const QString progress =
        transfer.percent == 0 ? tr("starting…") // the server may not have answered
                              : tr("%1%").arg(transfer.percent) + " · " +
                                    ProgressText(transfer.Transferred(), transfer.size, transfer.meter.Rate(now),
                                                 transfer.meter.TimeLeft(transfer.size - transfer.Transferred(), now));
    const auto halted = static_cast<int>(transfer.meter.SecondsHalted(now));
    return halted == 0 ? progress : progress + " · " + tr("no progress for %n s", nullptr, halted);
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
        return ToolTipText({transfer.name, transfer.detail, transfer.details});
    case Qt::AccessibleTextRole: {
        const QString state = transfer.status == Status::Failed     ? tr("failed")
                              : transfer.status == Status::Finished ? tr("finished")
                              : transfer.status == Status::Canceled ? tr("canceled")
                              : transfer.status == Status::Queued   ? tr("waiting for its turn")
                              : transfer.status == Status::Waiting  ? tr("waiting for the cloud")
                              : transfer.percent == 0               ? tr("starting…")
                                                                    : tr("%1%").arg(transfer.percent);
        const QString text = IsDownload(transfer) ? tr("Download of %1: %2") : tr("Upload of %1: %2");
        return text.arg(transfer.name, state) + (transfer.detail.isEmpty() ? QString() : ". " + transfer.detail);
    }
    case KindRole:
        return static_cast<int>(transfer.kind);
    case StatusRole:
        return static_cast<int>(transfer.status);
    case PercentRole:
        return transfer.percent;
    case ProgressRole:
        return transfer.status == Status::Running ? ProgressOf(transfer) : QString();
    case DetailRole:
        return transfer.detail;
    case ActionRole:
        return static_cast<int>(ActionFor(transfer));
    default:
        return {};
    }
}

void Transfers::AddRow(const Transfer& transfer)
{
    // This replaces an earlier attempt.
    const bool isAnyLeft = CountOf(Status::Failed) + CountOf(Status::Canceled) > 0;
    for (int row = isAnyLeft ? rowCount() - 1 : -1; row >= 0; --row) {
        const Transfer& old = transfers[row];
        if ((old.status == Status::Failed || old.status == Status::Canceled) &&
            IsDownload(old) == IsDownload(transfer) && old.subject == transfer.subject) {
            Remove(row);
        }
    }
    if (CountOfActive() == 0) {
        batch = {};
    }
    beginInsertRows({}, 0, 0);
    transfers.push_front(transfer);
    transfers.front().size = SizeOf(transfer);
    transfers.front().versions = VersionsOf(transfer.id);
    ++counts.at(static_cast<std::size_t>(transfer.status));
    active.insert({IsDownload(transfer), transfer.subject});
    endInsertRows();
    ++batch.count;
    batch.size += transfers.front().size;
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
    case Kind::ReplaceWith:
        session.ReplaceWith(transfer.id, transfer.subject);
        break;
    case Kind::KeepBoth:
        session.KeepBoth(transfer.id);
        break;
    case Kind::Download:
        session.Download(transfer.id, transfer.folder);
        break;
    case Kind::DownloadBeside:
        session.DownloadBeside(transfer.id, transfer.folder);
        break;
    case Kind::UseCloudVersion:
        session.UseCloudVersion(transfer.id);
        break;
    }
}

int Transfers::Find(bool isDownload, const QString& subject) const
{
    if (!active.contains({isDownload, subject})) {
        return -1;
    }
    const auto found = std::find_if(transfers.rbegin(), transfers.rend(), [&](const Transfer& each) { // the oldest run
        return !HasEnded(each) && IsDownload(each) == isDownload && each.subject == subject;
    });
    return static_cast<int>(transfers.rend() - found) - 1;
}

void Transfers::SetStatus(Transfer& transfer, Status status)
{
    --counts.at(static_cast<std::size_t>(transfer.status));
    ++counts.at(static_cast<std::size_t>(status));
    transfer.status = status;
    if (HasEnded(transfer)) {
        active.remove({IsDownload(transfer), transfer.subject});
    } else {
        active.insert({IsDownload(transfer), transfer.subject});
    }
}

qint64 Transfers::Transfer::Transferred() const
{
    return Apps::TransferMeter::BytesAt(percent, size);
}

qint64 Transfers::SizeOf(const Transfer& transfer) const
{
    if (!IsDownload(transfer)) {
        return QFileInfo(transfer.subject).size();
    }
    const auto* facts = session.Facts(transfer.id);
    return facts ? static_cast<qint64>(facts->size) : 0;
}

void Transfers::LeaveBatch(const Transfer& transfer)
{
    --batch.count;
    batch.size -= transfer.size;
    batch.transferred -= transfer.Transferred();
}

bool Transfers::IsDownload(const Transfer& transfer)
{
    return transfer.kind >= Kind::Download;
}

bool Transfers::HasEnded(const Transfer& transfer)
{
    return transfer.status == Status::Finished || transfer.status == Status::Failed ||
           transfer.status == Status::Canceled;
}

void Transfers::SetPercent(int row, int percent)
{
    if (row < 0 || (transfers[row].percent == percent && transfers[row].status == Status::Running)) {
        return;
    }
    Transfer& transfer = transfers[row];
    const Status before = transfer.status;
    SetStatus(transfer, Status::Running);
    if (before == Status::Waiting) {
        batch.meter = {}; // what had arrived before is there at once
    }
    batch.transferred -= transfer.Transferred();
    transfer.percent = percent;
    batch.transferred += transfer.Transferred();
    transfer.meter.Note(transfer.Transferred(), clock.elapsed());
    batch.meter.Note(batch.transferred, clock.elapsed());
    Changed(row);
    if (before != Status::Running) {
        emit CountsChanged();
    }
}

void Transfers::SetWaiting(int row)
{
    if (row >= 0) {
        batch.transferred -= transfers[row].Transferred();
        SetStatus(transfers[row], Status::Waiting);
        transfers[row].percent = 0;
        transfers[row].meter = {};
        Changed(row);
        emit CountsChanged();
    }
}

void Transfers::Finish(int row, const QString& detail)
{
    if (row < 0) {
        return;
    }
    batch.transferred += transfers[row].size - transfers[row].Transferred();
    ++batch.done;
    ++(IsDownload(transfers[row]) ? downloaded : uploaded);
    SetStatus(transfers[row], Status::Finished);
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
    --counts.at(static_cast<std::size_t>(transfers[row].status));
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
    if (row >= 0) {
        transfers[row].detail = ProblemDetail(problem);
        transfers[row].details = TechnicalText(problem);
        transfers[row].failure = problem.cause.kind;
        EndWithout(row, Status::Failed);
    }
}

void Transfers::EndWithout(int row, Status status)
{
    if (row >= 0) {
        LeaveBatch(transfers[row]);
        SetStatus(transfers[row], status);
        Changed(row);
        emit CountsChanged();
    }
}

void Transfers::Changed(int row)
{
    emit dataChanged(index(row), index(row));
}

QString Transfers::PathOf(const QString& id) const
{
    const auto record = session.Documents().GetFileInfo(id);
    return record ? QString::fromStdString(record->GetPath().utf8string()) : QString();
}

QString Transfers::VersionsOf(const QString& id) const
{
    const auto record = session.Documents().GetFileInfo(id);
    auto cloudInfo = record ? record->GetRedactableCloudInfo() : std::nullopt;
    return cloudInfo ? QString::fromStdString(record->GetMd5Hash() + ' ' + cloudInfo->GetMd5Hash()) : QString();
}

Transfers::Action Transfers::ActionFor(const Transfer& transfer)
{
    switch (transfer.status) {
    case Status::Failed:
        return transfer.failure == FailureKind::Conflict || transfer.failure == FailureKind::NameTaken
                   ? Action::Decide
                   : Action::TryAgain;
    case Status::Canceled:
        return Action::StartAgain;
    case Status::Finished:
        return Action::None;
    default:
        return Action::Cancel;
    }
}

} // namespace Norlis::Window
