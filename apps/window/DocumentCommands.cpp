#include "DocumentCommands.h"

#include "CloudVersions.h"
#include "ConflictPictures.h"
#include "DocumentsView.h"
#include "FileManager.h"
#include "MessageBar.h"
#include "Questions.h"
#include "Texts.h"
#include "Transfers.h"

#include <apps/common/PrintableText.h>
#include <host/CloudDocumentsModel.h>
#include <host/session/CloudFacts.h>
#include <host/session/CloudSession.h>

#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QUrl>

#include <algorithm>
#include <filesystem>
#include <utility>

namespace Norlis::Window {

using Model = Host::CloudDocumentsModel;
using State = PDF::FileInfo::CloudStatus;

namespace {

constexpr int maxRemovals = 10; // without a question

} // namespace

DocumentCommands::DocumentCommands(const Parts& parts, QWidget& widget)
    : parts(parts),
      widget(widget),
      removals(parts.session, parts.message),
      copied(parts.session, parts.transfers),
      changes(parts.session, parts.model, parts.transfers, parts.message, parts.preferences),
      uploads({parts.session, parts.model, parts.transfers, parts.message}, widget)
{
    connect(&uploads, &UploadCommands::ReplacementChosen, this, &DocumentCommands::ReplaceInCloud);
    connect(&parts.transfers, &Transfers::OpenRequested, this, &DocumentCommands::OnFetched);
    // Later, since it may change the list of transfers.
    connect(&parts.transfers, &Transfers::DecisionNeeded, this, &DocumentCommands::Decide, Qt::QueuedConnection);
    connect(&parts.session, &Host::CloudSession::Failed, this, &DocumentCommands::OnFailed);
    connect(&parts.session, &Host::CloudSession::ListRefreshed, this, &DocumentCommands::OnListRefreshed);
    connect(&changes, &UnsentChanges::UploadChosen, this, &DocumentCommands::ReplaceInCloud);
    connect(&changes, &UnsentChanges::UploadAsNewChosen, &uploads, &UploadCommands::UploadNew);
}

DocumentCommands::~DocumentCommands()
{
    for (const QString& kept : qAsConst(older)) {
        offered.append(kept);
    }
    for (const QString& kept : qAsConst(offered)) {
        QFile::remove(kept);
        QDir().rmdir(QFileInfo(kept).path());
    }
}

void DocumentCommands::ChooseDownloadFolder()
{
    const auto dialog = new QFileDialog(&widget, tr("Download To"), parts.preferences.DownloadFolder());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& folder) {
        parts.preferences.SetDownloadFolder(folder);
        Download(folder);
    });
    dialog->open();
}

void DocumentCommands::Download(const QString& folder)
{
    const auto indexes = parts.view.selectionModel()->selectedIndexes();
    for (const auto& index : indexes) {
        const QString id = index.data(Model::IdRole).toString();
        const QString path = index.data(Model::PathRole).toString();
        const bool isTheUsers = !path.isEmpty() && !path.startsWith(parts.session.ViewingFolder(id));
        const QString usual = isTheUsers ? QFileInfo(path).absolutePath() : parts.preferences.DownloadFolder();
        const QString target = folder.isEmpty() ? usual : folder;
        QDir().mkpath(target);
        parts.transfers.Download(id, target);
    }
}

void DocumentCommands::Open()
{
    const QStringList ids = parts.view.SelectedIds();
    if (ids.size() <= maxOpened) {
        Open(ids);
    } else {
        AskToOpen(widget, ids.size(), [this, ids] { Open(ids); });
    }
}

void DocumentCommands::Open(const QStringList& ids)
{
    for (const QString& id : ids) {
        const auto index = parts.model.index(parts.model.RowOf(id));
        const QString path = index.data(Model::PathRole).toString();
        const bool isOlder = index.data(Model::StateRole).toInt() == static_cast<int>(State::ChangedInCloud);
        const bool isHere = QFileInfo::exists(path);
        if (isHere && !(isOlder && parts.session.IsSignedIn())) {
            OpenFile(path);
            continue;
        }
        if (isHere) {
            KeepOlder(id, path);
        }
        parts.transfers.Download(id, FolderToView(id, path), true);
    }
}

void DocumentCommands::Fetch(const QString& id)
{
    const QString path = parts.model.index(parts.model.RowOf(id)).data(Model::PathRole).toString();
    parts.transfers.Download(id, FolderToView(id, path));
}

QString DocumentCommands::FolderToView(const QString& id, const QString& path) const
{
    const QString chosen = parts.preferences.OpenedFolder();
    const QString folder = QFileInfo::exists(path) ? QFileInfo(path).path()
                           : chosen.isEmpty()      ? parts.session.ViewingFolder(id)
                                                   : chosen;
    QDir().mkpath(folder);
    return folder;
}

void DocumentCommands::KeepOlder(const QString& id, const QString& path)
{
    // A second name for the file, which keeps its content when the download takes the first one.
    const QString folder = parts.session.ViewingFolder(id) + "/older";
    const QString kept = folder + '/' + QFileInfo(path).fileName();
    QDir().mkpath(folder);
    QFile::remove(kept);
    std::error_code failure;
    std::filesystem::create_hard_link(QFile::encodeName(path).constData(), QFile::encodeName(kept).constData(),
                                      failure);
    if (!failure) {
        older.insert(path, kept);
    }
}

void DocumentCommands::OnFetched(const QString& path)
{
    OpenFile(path);
    const QString kept = older.take(path);
    if (!kept.isEmpty()) {
        QFile::setPermissions(kept, QFile::ReadOwner); // changes would go nowhere
        offered.append(kept);
        parts.message.Show(
            Topic::fetched, tr("A newer version of “%1” was fetched.").arg(Apps::Printable(QFileInfo(path).fileName())),
            {}, {{tr("Open the Older One"), [kept] { QDesktopServices::openUrl(QUrl::fromLocalFile(kept)); }}},
            MessageBar::Kind::Notice);
    }
}

void DocumentCommands::OpenFile(const QString& path)
{
    parts.session.WatchLocalCopy(path);
    if (QDesktopServices::openUrl(QUrl::fromLocalFile(path))) {
        parts.message.Close(Topic::opening);
    } else {
        parts.message.Show(Topic::opening,
                           tr("“%1” cannot be opened.").arg(Apps::Printable(QFileInfo(path).fileName())),
                           path.startsWith(parts.session.ViewingFolder({}))
                               ? tr("No program for opening PDF documents was found.")
                               : tr("No program for opening PDF documents was found. The document is at %1.")
                                     .arg(QDir::toNativeSeparators(path)));
    }
}

void DocumentCommands::ShowInFolder()
{
    QStringList files;
    const auto selected = parts.view.selectionModel()->selectedIndexes();
    for (const auto& index : selected) {
        files.append(index.data(Model::PathRole).toString());
    }
    files.removeAll({});
    Window::ShowInFolder(files);
}

bool DocumentCommands::IsAnyHere() const
{
    const auto selected = parts.view.selectionModel()->selectedIndexes();
    return std::any_of(selected.begin(), selected.end(),
                       [](const auto& index) { return !index.data(Model::PathRole).toString().isEmpty(); });
}

QStringList DocumentCommands::SelectedIn(std::initializer_list<State> states) const
{
    QStringList ids;
    const auto selected = parts.view.selectionModel()->selectedIndexes();
    for (const auto& index : selected) {
        const auto state = static_cast<State>(index.data(Model::StateRole).toInt());
        if (std::find(states.begin(), states.end(), state) != states.end()) {
            ids.append(index.data(Model::IdRole).toString());
        }
    }
    return ids;
}

QStringList DocumentCommands::ChangedHere() const
{
    return SelectedIn({State::ChangedLocally, State::ChangedOnBothSides});
}

QStringList DocumentCommands::InConflict() const
{
    return SelectedIn({State::ChangedOnBothSides});
}

void DocumentCommands::ResolveConflicts()
{
    ReplaceInCloud(InConflict());
}

void DocumentCommands::UseCloud()
{
    const QStringList ids = ChangedHere();
    if (!ids.isEmpty()) {
        AskToUseCloud(widget, NamesOf(ids), [this, ids] {
            for (const QString& id : ids) {
                parts.transfers.UseCloudVersion(id);
            }
        });
    }
}

void DocumentCommands::UploadChanges()
{
    ReplaceInCloud(ChangedHere());
}

void DocumentCommands::ReplaceInCloud(const QStringList& ids)
{
    QStringList conflicts;
    for (const QString& id : ids) {
        const int state = parts.model.index(parts.model.RowOf(id)).data(Model::StateRole).toInt();
        if (state == static_cast<int>(State::ChangedOnBothSides) || state == static_cast<int>(State::ChangedInCloud)) {
            conflicts.append(id);
        } else {
            parts.transfers.UploadChanges(id);
        }
    }
    if (conflicts.isEmpty()) {
        return;
    }
    // While the question waits for its answer, the list may learn of versions that it is not about.
    const auto answer = [this, conflicts, asked = VersionsOf(parts.session, conflicts)](ConflictChoice choice) {
        if (choice == ConflictChoice::UseMine && VersionsOf(parts.session, conflicts) != asked) {
            ReplaceInCloud(conflicts);
            return;
        }
        for (const QString& id : conflicts) {
            Settle(id, choice);
        }
    };
    const bool isOnlyOne = conflicts.size() == 1;
    QMessageBox& question =
        AskAboutConflicts(widget, NamesOf(conflicts), isOnlyOne ? VersionsText(conflicts.first()) : QString(), answer);
    if (isOnlyOne) {
        const QString path = parts.model.index(parts.model.RowOf(conflicts.first())).data(Model::PathRole).toString();
        new ConflictPictures(parts.session, conflicts.first(), path, question);
    }
}

void DocumentCommands::Settle(const QString& id, ConflictChoice choice)
{
    switch (choice) {
    case ConflictChoice::KeepBoth:
        parts.transfers.KeepBoth(id);
        break;
    case ConflictChoice::UseMine:
        parts.transfers.ReplaceInCloud(id);
        break;
    case ConflictChoice::UseCloud:
        parts.transfers.UseCloudVersion(id);
        break;
    }
}

void DocumentCommands::Decide(const QString& id, const QString& file, const QString& folder)
{
    if (!file.isEmpty()) {
        uploads.UploadNew({file});
        return;
    }
    const int state = parts.model.index(parts.model.RowOf(id)).data(Model::StateRole).toInt();
    if (folder.isEmpty() || state == static_cast<int>(State::ChangedOnBothSides)) {
        ReplaceInCloud({id});
    } else if (state == static_cast<int>(State::ChangedLocally)) {
        AskAboutLocalChanges(widget, NameOf(id), [this, id](ConflictChoice choice) {
            if (choice == ConflictChoice::UseMine) {
                ReplaceInCloud({id});
            } else {
                Settle(id, choice);
            }
        });
    } else {
        parts.transfers.Download(id, folder);
    }
}

QString DocumentCommands::VersionsText(const QString& id) const
{
    const auto* facts = parts.session.Facts(id);
    const QFileInfo file(parts.model.index(parts.model.RowOf(id)).data(Model::PathRole).toString());
    if (!facts || !file.exists()) {
        return {};
    }
    const auto marked = [](const QString& text, const QDateTime& time, const QDateTime& other) {
        return time.toSecsSinceEpoch() > other.toSecsSinceEpoch() ? tr("%1 (newer)").arg(text) : text;
    };
    const QDateTime here = file.lastModified();
    const QDateTime there = facts->modifiedAt;
    return marked(tr("Here: %1, %2").arg(SizeText(file.size()), DateText(here)), here, there) + '\n' +
           marked(tr("In the cloud: %1, %2").arg(SizeText(static_cast<qint64>(facts->size)), DateText(there)), there,
                  here);
}

void DocumentCommands::OnFailed(const Host::CloudProblem& problem)
{
    if (problem.request != Host::CloudProblem::Request::Upload) {
        return;
    }
    const bool isAutomatic = changes.TakeAutomatic(parts.session.DocumentAt(problem.subject));
    if (problem.cause.kind == Social::OAuth2::FailureKind::Conflict) {
        conflicted.append(isAutomatic ? QStringList() : QStringList(problem.subject));
        parts.session.Refresh(); // what stands in the cloud has to be known before anybody is asked
    }
}

void DocumentCommands::OnListRefreshed()
{
    QStringList ids;
    const QStringList paths = std::exchange(conflicted, {});
    for (const QString& path : paths) {
        const QString id = parts.session.DocumentAt(path);
        if (parts.model.index(parts.model.RowOf(id)).data(Model::StateRole).toInt() ==
            static_cast<int>(State::ChangedOnBothSides)) {
            ids.append(id);
        }
    }
    ReplaceInCloud(ids);
}

void DocumentCommands::Copy()
{
    QStringList present;
    QSet<QString> absent;
    const QStringList ids = parts.view.SelectedIds();
    for (const QString& id : ids) {
        const QString path = parts.model.index(parts.model.RowOf(id)).data(Model::PathRole).toString();
        if (QFileInfo(path).isFile()) {
            present.append(path);
        } else {
            absent.insert(id);
        }
    }
    copied.Copy(present, absent);
}

void DocumentCommands::Remove()
{
    const QStringList ids = parts.view.SelectedIds();
    if (ids.isEmpty()) {
        return;
    }
    const int changed = ChangedHere().size();
    if (ids.size() <= maxRemovals && changed == 0) {
        RemoveLater(ids);
        return;
    }
    AskToRemove(widget, NamesOf(ids), changed, [this, ids, asked = VersionsOf(parts.session, ids)] {
        parts.message.Close(Topic::removal);
        const QStringList now = VersionsOf(parts.session, ids); // see above
        QStringList unchanged;
        QString changed;
        for (int index = 0; index < ids.size(); ++index) {
            if (now[index] == asked[index]) {
                unchanged.append(ids[index]);
            } else {
                changed = ids[index];
            }
        }
        RemoveLater(unchanged);
        if (!changed.isEmpty()) {
            parts.message.Show(Topic::removal, tr("“%1” was not removed.").arg(NameOf(changed)),
                               tr("It has changed in the cloud since you were asked."));
        }
    });
}

void DocumentCommands::RemoveLater(const QStringList& ids)
{
    if (!ids.isEmpty()) {
        removals.Remove(ids, ids.size() == 1 ? tr("“%1” was removed.").arg(NameOf(ids.first()))
                                             : tr("%n documents were removed.", nullptr, ids.size()));
    }
}

int DocumentCommands::CountOfChanges() const
{
    return changes.Count();
}

UploadCommands& DocumentCommands::Uploads()
{
    return uploads;
}

RemovalUndo& DocumentCommands::Removals()
{
    return removals;
}

QString DocumentCommands::NameOf(const QString& id) const
{
    const auto* facts = parts.session.Facts(id);
    return Apps::Printable(facts ? QString::fromStdString(facts->name) : id);
}

QStringList DocumentCommands::NamesOf(const QStringList& ids) const
{
    QStringList names;
    for (const QString& id : ids) {
        names.append(NameOf(id));
    }
    return names;
}

} // namespace Norlis::Window
