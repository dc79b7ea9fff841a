#include "UploadCommands.h"

#include "CopiedDocuments.h"
#include "VersionsDialog.h"

#include <apps/common/PrintableText.h>
#include <apps/window/texts/Texts.h>
#include <apps/window/transfers/Transfers.h>
#include <apps/window/widgets/MessageBar.h>
#include <apps/window/widgets/Questions.h>
#include <host/CloudDocumentsModel.h>
#include <host/session/CloudSession.h>

#include <QClipboard>
#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QHash>
#include <QStandardPaths>

#include <algorithm>

namespace Norlis::Window {

using Model = Host::CloudDocumentsModel;

namespace {

constexpr int maxUploadsOfFolders = 50; // without a question

} // namespace

UploadCommands::UploadCommands(const Parts& parts, QWidget& widget)
    : parts(parts),
      widget(widget),
      folder(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
{
    if (!QFileInfo(folder).isDir()) {
        folder = QDir::homePath();
    }
    connect(&search, &PdfSearch::Found, this, &UploadCommands::OnFound);
}

void UploadCommands::Choose()
{
    const auto dialog = new QFileDialog(&widget, tr("Upload PDF Documents"), folder, tr("PDF documents (*.pdf *.PDF)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    connect(dialog, &QFileDialog::filesSelected, this, [this](const QStringList& paths) {
        folder = QFileInfo(paths.first()).path();
        Upload(paths);
    });
    dialog->open();
}

void UploadCommands::Paste()
{
    const QStringList paths = LocalPaths(QGuiApplication::clipboard()->mimeData());
    if (paths.isEmpty()) {
        parts.message.Show(Topic::files, tr("There are no files on the clipboard."), {});
    } else {
        Upload(paths);
    }
}

void UploadCommands::Offer(const QStringList& paths)
{
    QStringList missing;
    QStringList refused;
    QStringList all = question ? asked : QStringList();
    for (const QString& path : paths) {
        if (!QFileInfo::exists(path)) {
            missing.append(Apps::Printable(QDir::toNativeSeparators(path)));
        } else if (!QFileInfo(path).isDir() && !IsPdf(path)) {
            refused.append(path);
        } else if (!all.contains(path)) {
            all.append(path);
        }
    }
    if (!missing.isEmpty()) {
        parts.message.Show(Topic::files, tr("There is no file %1.").arg(SomeOf(missing)), {});
    }
    if (!refused.isEmpty()) {
        Upload(refused); // which says why not
    }
    if (all.isEmpty() || (question && all == asked)) {
        return;
    }
    if (question) {
        question->reject(); // one question about all, instead of one behind the other
    }
    QStringList names;
    for (const QString& path : qAsConst(all)) {
        names.append(Apps::Printable(QFileInfo(path).fileName()));
    }
    asked = all;
    question = &AskToUpload(widget, names, [this, all] { Upload(all); });
}

void UploadCommands::Upload(const QStringList& paths)
{
    if (std::any_of(paths.begin(), paths.end(), [](const QString& path) { return QFileInfo(path).isDir(); })) {
        search.Start(paths);
        return;
    }
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
        if (QFileInfo::exists(path) && !IsPdf(path)) {
            refused.append(Apps::Printable(QFileInfo(path).fileName()));
        } else if (known.isEmpty()) {
            fresh.append(QFileInfo(path).absoluteFilePath());
        } else {
            changed.append(known);
        }
    }
    if (!changed.isEmpty()) {
        emit ReplacementChosen(changed);
    }
    UploadNew(fresh);
    if (refused.isEmpty()) {
        parts.message.Close(Topic::files);
    } else {
        parts.message.Show(
            Topic::files,
            refused.size() == 1
                ? tr("“%1” is not a PDF document and was not uploaded.").arg(refused.first())
                : tr("%n of the files are not PDF documents and were not uploaded.", nullptr, refused.size()),
            refused.size() == 1 ? QString() : SomeOf(refused));
    }
}

void UploadCommands::OnFound(const QStringList& paths)
{
    if (paths.isEmpty()) {
        parts.message.Show(Topic::files, tr("There are no PDF documents in the folder."), {});
    } else if (paths.size() > PdfSearch::maxFound) {
        parts.message.Show(Topic::files,
                           tr("There are more than %n PDF documents in the folder.", nullptr, PdfSearch::maxFound),
                           tr("Nothing was uploaded. Choose a folder with fewer."));
    } else if (paths.size() > maxUploadsOfFolders) {
        Offer(paths);
    } else {
        Upload(paths);
    }
}

void UploadCommands::UploadNew(const QStringList& paths)
{
    QStringList free;
    QVector<VersionsDialog::Case> taken;
    for (const QString& path : paths) {
        const QString name = QFileInfo(path).fileName();
        const QString id = parts.session.DocumentNamed(name);
        if (id.isEmpty()) {
            free.append(path);
        } else {
            taken.append({tr("There is a document “%1” in the cloud already.").arg(Apps::Printable(name)), path, id});
        }
    }
    parts.transfers.Upload(free);
    if (taken.isEmpty()) {
        return;
    }
    const QVector<VersionsDialog::Choice> choices = {{tr("&Keep Both"), tr("Yours gets a number in its name."), true},
                                                     {tr("&Replace"), tr("The version in the cloud is lost.")}};
    const auto settle = [this](int choice, const QVector<VersionsDialog::Case>& about) {
        for (const auto& each : about) {
            if (choice == 0) {
                parts.transfers.Upload({each.path});
            } else {
                parts.transfers.ReplaceWith(each.id, each.path);
            }
        }
    };
    new VersionsDialog("takenNames", parts.session, taken, choices, settle, widget);
}

} // namespace Norlis::Window
