#include "DocumentCommands.h"

#include "FileManager.h"

#include <apps/common/PrintableText.h>
#include <apps/window/list/DocumentsView.h>
#include <apps/window/texts/KnownDocuments.h>
#include <apps/window/texts/Texts.h>
#include <apps/window/transfers/Transfers.h>
#include <apps/window/widgets/MessageBar.h>
#include <apps/window/widgets/Questions.h>
#include <host/CloudDocumentsModel.h>
#include <host/session/CloudFacts.h>
#include <host/session/CloudSession.h>

#include <QDesktopServices>
#include <QDir>
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
      unsent(parts.session, parts.model, parts.transfers, parts.message, parts.preferences),
      changes({parts.session, parts.model, parts.transfers}, widget),
      downloads({parts.session, parts.preferences, parts.model, parts.transfers, parts.message}, widget),
      uploads({parts.session, parts.model, parts.transfers, parts.message}, widget)
{
    connect(&uploads, &UploadCommands::ReplacementChosen, &changes, &ChangesCommands::Upload);
    connect(&downloads, &DownloadCommands::ChangesMet, &changes, &ChangesCommands::AskBeforeDownload);
    connect(&parts.transfers, &Transfers::OpenRequested, this, &DocumentCommands::OnFetched);
    // Later, since it may change the list of transfers.
    connect(&parts.transfers, &Transfers::DecisionNeeded, this, &DocumentCommands::Decide, Qt::QueuedConnection);
    connect(&changes, &ChangesCommands::LeftAlone, &unsent, &UnsentChanges::Remind);
    connect(&unsent, &UnsentChanges::UploadDue, &changes, &ChangesCommands::UploadUnasked);
    connect(&unsent, &UnsentChanges::UploadChosen, &changes, &ChangesCommands::Upload);
    connect(&unsent, &UnsentChanges::UploadAsNewChosen, &uploads, &UploadCommands::UploadNew);
    ForgetOldMessages();
}

void DocumentCommands::ForgetOldMessages()
{
    connect(&parts.session, &Host::CloudSession::LocalCopyChanged, this,
            [this](const QString&, const QString& id) { parts.message.Mended(Topic::opening, id); }); // it was opened
    connect(&parts.session, &Host::CloudSession::RemovalPendingChanged, this,
            [this](const QString& id, bool isPending) {
                if (isPending) {
                    parts.message.Mended(Topic::removal, id);
                }
            });
    const auto forget = [this](const QString& id) {
        parts.message.Mended(Topic::opening, id);
        parts.message.Mended(Topic::removal, id);
    };
    connect(&parts.session, &Host::CloudSession::DocumentRemoved, this, forget);
    connect(&parts.session, &Host::CloudSession::ListRefreshed, this,
            [forget](const QStringList&, const QStringList&, const QStringList& gone) {
                std::for_each(gone.begin(), gone.end(), forget);
            });
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

void DocumentCommands::Download()
{
    downloads.Download(parts.view.SelectedIds());
}

void DocumentCommands::ChooseDownloadFolder()
{
    downloads.ChooseFolder(parts.view.SelectedIds());
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
        parts.transfers.DownloadBeside(id, FolderToView(id, path), true);
    }
}

void DocumentCommands::Fetch(const QString& id)
{
    const QString path = parts.model.index(parts.model.RowOf(id)).data(Model::PathRole).toString();
    parts.transfers.DownloadBeside(id, FolderToView(id, path));
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
                           tr("No program for opening PDF documents was found."),
                           {{tr("Show in Folder"), [path] { Window::ShowInFolder({path}); }}});
        parts.message.SetSubject(parts.session.DocumentAt(path));
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
    changes.Upload(InConflict());
}

void DocumentCommands::UseCloud()
{
    changes.GiveUp(ChangedHere());
}

void DocumentCommands::UploadChanges()
{
    changes.Upload(ChangedHere());
}

void DocumentCommands::Decide(const QString& id, const QString& file, const QString& folder)
{
    if (!file.isEmpty()) {
        uploads.UploadNew({file});
    } else if (folder.isEmpty()) {
        changes.Upload({id});
    } else {
        downloads.Download({id}, folder);
    }
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
            parts.message.Show(Topic::removal, tr("“%1” was not removed.").arg(NameOf(parts.session, changed)),
                               tr("It has changed in the cloud since you were asked."));
            parts.message.SetSubject(changed);
        }
    });
}

void DocumentCommands::RemoveLater(const QStringList& ids)
{
    if (!ids.isEmpty()) {
        removals.Remove(ids, ids.size() == 1 ? tr("“%1” was removed.").arg(NameOf(parts.session, ids.first()))
                                             : tr("%n documents were removed.", nullptr, ids.size()));
    }
}

int DocumentCommands::CountOfChanges() const
{
    return unsent.Count();
}

UploadCommands& DocumentCommands::Uploads()
{
    return uploads;
}

RemovalUndo& DocumentCommands::Removals()
{
    return removals;
}

QStringList DocumentCommands::NamesOf(const QStringList& ids) const
{
    QStringList names;
    for (const QString& id : ids) {
        names.append(NameOf(parts.session, id));
    }
    return names;
}

} // namespace Norlis::Window
