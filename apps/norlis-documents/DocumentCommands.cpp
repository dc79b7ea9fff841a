#include "DocumentCommands.h"

#include "DocumentsView.h"
#include "MessageBar.h"
#include "Questions.h"
#include "Transfers.h"

#include <host/CloudDocumentsModel.h>
#include <host/CloudSession.h>

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

DocumentCommands::DocumentCommands(const Parts& parts, QWidget& widget)
    : session(parts.session),
      settings(parts.settings),
      model(parts.model),
      view(parts.view),
      transfers(parts.transfers),
      message(parts.message),
      widget(widget)
{
    connect(&transfers, &Transfers::ToBeOpened, this, &DocumentCommands::OpenFile);
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
    for (int row = 0; row < model.rowCount(); ++row) {
        const QString path = model.index(row).data(Model::PathRole).toString();
        if (!path.isEmpty()) {
            idByPath.insert(path, model.index(row).data(Model::IdRole).toString());
        }
    }
    QStringList refused;
    QStringList fresh;
    QStringList changed;
    for (const QString& path : paths) {
        const QString known = idByPath.value(QFileInfo(path).canonicalFilePath());
        if (!IsPdf(path)) {
            refused.append(QFileInfo(path).fileName());
        } else if (known.isEmpty()) {
            fresh.append(QFileInfo(path).absoluteFilePath());
        } else {
            changed.append(known);
        }
    }
    ReplaceInCloud(changed);
    transfers.Upload(fresh);
    if (refused.isEmpty()) {
        message.Close(Topic::files);
    } else {
        message.Show(Topic::files,
                     refused.size() == 1
                         ? tr("“%1” is not a PDF document and was not uploaded.").arg(refused.first())
                         : tr("%n of the files are not PDF documents and were not uploaded.", nullptr, refused.size()),
                     {});
    }
}

QString DocumentCommands::DownloadFolder() const
{
    return settings.value(downloadFolderKey, QStandardPaths::writableLocation(QStandardPaths::DownloadLocation))
        .toString();
}

void DocumentCommands::ChooseDownloadFolder()
{
    const auto dialog = new QFileDialog(&widget, tr("Download To"), DownloadFolder());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& folder) {
        settings.setValue(downloadFolderKey, folder);
        Download(folder);
    });
    dialog->open();
}

void DocumentCommands::Download(const QString& folder)
{
    const auto indexes = view.selectionModel()->selectedIndexes();
    for (const auto& index : indexes) {
        const QString path = index.data(Model::PathRole).toString();
        const QString usual = path.isEmpty() ? DownloadFolder() : QFileInfo(path).absolutePath();
        const QString target = folder.isEmpty() ? usual : folder;
        QDir().mkpath(target);
        transfers.Download(index.data(Model::IdRole).toString(), target);
    }
}

void DocumentCommands::Open()
{
    const QStringList ids = view.SelectedIds();
    for (const QString& id : ids) {
        const QString path = model.index(model.RowOf(id)).data(Model::PathRole).toString();
        if (QFileInfo::exists(path)) {
            OpenFile(path);
        } else {
            QDir().mkpath(DownloadFolder());
            transfers.Download(id, DownloadFolder(), true);
        }
    }
}

void DocumentCommands::OpenFile(const QString& path)
{
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path))) {
        message.Show(
            Topic::files, tr("“%1” cannot be opened.").arg(QFileInfo(path).fileName()),
            tr("There is no program for PDF documents. The document is at %1.").arg(QDir::toNativeSeparators(path)));
    }
}

QStringList DocumentCommands::ChangedHere() const
{
    QStringList ids;
    const auto selected = view.selectionModel()->selectedIndexes();
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
        const int state = model.index(model.RowOf(id)).data(Model::StateRole).toInt();
        if (state == static_cast<int>(State::ChangedOnBothSides) || state == static_cast<int>(State::ChangedInCloud)) {
            conflicts.append(id);
        } else {
            transfers.UploadChanges(id);
        }
    }
    if (conflicts.isEmpty()) {
        return;
    }
    AskToReplace(widget, NamesOf(conflicts), [this, conflicts] {
        for (const QString& id : conflicts) {
            transfers.UploadChanges(id);
        }
    });
}

void DocumentCommands::Remove()
{
    const QStringList ids = view.SelectedIds();
    if (ids.isEmpty()) {
        return;
    }
    AskToRemove(widget, NamesOf(ids), [this, ids] {
        message.Close(Topic::removal);
        for (const QString& id : ids) {
            session.Remove(id);
        }
    });
}

QString DocumentCommands::NameOf(const QString& id) const
{
    const int row = model.RowOf(id);
    return row < 0 ? id : model.index(row).data(Model::NameRole).toString();
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
