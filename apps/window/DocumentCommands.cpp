#include "DocumentCommands.h"

#include "DocumentsView.h"
#include "MessageBar.h"
#include "Questions.h"
#include "Transfers.h"

#include <apps/common/PrintableText.h>
#include <host/CloudDocumentsModel.h>
#include <host/session/CloudSession.h>

#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QMimeDatabase>
#include <QSettings>
#include <QStandardPaths>
#include <QUrl>

namespace Norlis::Window {

using Model = Host::CloudDocumentsModel;
using State = PDF::FileInfo::CloudStatus;

namespace {

const auto downloadFolderKey = QStringLiteral("downloadFolder");

bool IsPdf(const QString& path)
{
    return QFileInfo(path).isFile() && QMimeDatabase().mimeTypeForFile(path).inherits("application/pdf");
}

} // namespace

DocumentCommands::DocumentCommands(const Parts& parts, QWidget& widget) : parts(parts), widget(widget)
{
    connect(&parts.transfers, &Transfers::OpenRequested, this, &DocumentCommands::OpenFile);
}

void DocumentCommands::ChooseUploads()
{
    const auto dialog = new QFileDialog(&widget, tr("Upload PDF Documents"), {}, tr("PDF documents (*.pdf *.PDF)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    connect(dialog, &QFileDialog::filesSelected, this, &DocumentCommands::Upload);
    dialog->open();
}

void DocumentCommands::Upload(const QStringList& paths)
{
    QHash<QString, QString> idByPath;
    for (int row = 0; row < parts.model.rowCount(); ++row) {
        const QString path = parts.model.index(row).data(Model::PathRole).toString();
        if (!path.isEmpty()) {
            idByPath.insert(path, parts.model.index(row).data(Model::IdRole).toString());
        }
    }
    QStringList refused;
    QStringList fresh;
    QStringList changed;
    for (const QString& path : paths) {
        const QString known = idByPath.value(QFileInfo(path).canonicalFilePath());
        if (!IsPdf(path)) {
            refused.append(Apps::Printable(QFileInfo(path).fileName()));
        } else if (known.isEmpty()) {
            fresh.append(QFileInfo(path).absoluteFilePath());
        } else {
            changed.append(known);
        }
    }
    ReplaceInCloud(changed);
    parts.transfers.Upload(fresh);
    if (refused.isEmpty()) {
        parts.message.Close(Topic::files);
    } else {
        parts.message.Show(
            Topic::files,
            refused.size() == 1
                ? tr("“%1” is not a PDF document and was not uploaded.").arg(refused.first())
                : tr("%n of the files are not PDF documents and were not uploaded.", nullptr, refused.size()),
            {});
    }
}

QString DocumentCommands::DownloadFolder() const
{
    return parts.settings.value(downloadFolderKey, QStandardPaths::writableLocation(QStandardPaths::DownloadLocation))
        .toString();
}

void DocumentCommands::ChooseDownloadFolder()
{
    const auto dialog = new QFileDialog(&widget, tr("Download To"), DownloadFolder());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& folder) {
        parts.settings.setValue(downloadFolderKey, folder);
        Download(folder);
    });
    dialog->open();
}

void DocumentCommands::Download(const QString& folder)
{
    const auto indexes = parts.view.selectionModel()->selectedIndexes();
    for (const auto& index : indexes) {
        const QString path = index.data(Model::PathRole).toString();
        const QString usual = path.isEmpty() ? DownloadFolder() : QFileInfo(path).absolutePath();
        const QString target = folder.isEmpty() ? usual : folder;
        QDir().mkpath(target);
        parts.transfers.Download(index.data(Model::IdRole).toString(), target);
    }
}

void DocumentCommands::Open()
{
    const QStringList ids = parts.view.SelectedIds();
    for (const QString& id : ids) {
        const QString path = parts.model.index(parts.model.RowOf(id)).data(Model::PathRole).toString();
        if (QFileInfo::exists(path)) {
            OpenFile(path);
        } else {
            QDir().mkpath(DownloadFolder());
            parts.transfers.Download(id, DownloadFolder(), true);
        }
    }
}

void DocumentCommands::OpenFile(const QString& path)
{
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path))) {
        parts.message.Show(Topic::files, tr("“%1” cannot be opened.").arg(Apps::Printable(QFileInfo(path).fileName())),
                           tr("No program for opening PDF documents was found. The document is at %1.")
                               .arg(QDir::toNativeSeparators(path)));
    }
}

QStringList DocumentCommands::ChangedHere() const
{
    QStringList ids;
    const auto selected = parts.view.selectionModel()->selectedIndexes();
    for (const auto& index : selected) {
        const int state = index.data(Model::StateRole).toInt();
        if (state == static_cast<int>(State::ChangedLocally) || state == static_cast<int>(State::ChangedOnBothSides)) {
            ids.append(index.data(Model::IdRole).toString());
        }
    }
    return ids;
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
    AskToReplace(widget, NamesOf(conflicts), [this, conflicts, asked = VersionsOf(conflicts)] {
        if (VersionsOf(conflicts) != asked) {
            ReplaceInCloud(conflicts);
            return;
        }
        for (const QString& id : conflicts) {
            parts.transfers.ReplaceInCloud(id);
        }
    });
}

void DocumentCommands::Remove()
{
    const QStringList ids = parts.view.SelectedIds();
    if (ids.isEmpty()) {
        return;
    }
    AskToRemove(widget, NamesOf(ids), [this, ids, asked = VersionsOf(ids)] {
        parts.message.Close(Topic::removal);
        const QStringList now = VersionsOf(ids); // see above
        for (int index = 0; index < ids.size(); ++index) {
            if (now[index] == asked[index]) {
                parts.session.Remove(ids[index]);
            } else {
                parts.message.Show(Topic::removal, tr("“%1” was not removed.").arg(NameOf(ids[index])),
                                   tr("It has changed in the cloud since you were asked."));
            }
        }
    });
}

QString DocumentCommands::NameOf(const QString& id) const
{
    const int row = parts.model.RowOf(id);
    return Apps::Printable(row < 0 ? id : parts.model.index(row).data(Model::NameRole).toString());
}

QStringList DocumentCommands::NamesOf(const QStringList& ids) const
{
    QStringList names;
    for (const QString& id : ids) {
        names.append(NameOf(id));
    }
    return names;
}

QStringList DocumentCommands::VersionsOf(const QStringList& ids) const
{
    QStringList versions;
    for (const QString& id : ids) {
        const auto record = parts.session.Documents().GetFileInfo(id);
        auto cloudInfo = record ? record->GetRedactableCloudInfo() : std::nullopt;
        versions.append(cloudInfo ? QString::fromStdString(cloudInfo->GetMd5Hash()) : QString());
    }
    return versions;
}

} // namespace Norlis::Window
