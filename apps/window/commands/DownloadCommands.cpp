#include "DownloadCommands.h"

#include "VersionsDialog.h"

#include <apps/common/PrintableText.h>
#include <apps/window/texts/KnownDocuments.h>
#include <apps/window/transfers/Transfers.h>
#include <apps/window/widgets/MessageBar.h>
#include <contracts/FileInfo.h>
#include <host/CloudDocumentsModel.h>
#include <host/session/CloudSession.h>
#include <host/session/OtherName.h>

#include <QDate>
#include <QDir>
#include <QFileDialog>
#include <QSet>
#include <QSysInfo>

namespace Norlis::Window {

using Model = Host::CloudDocumentsModel;
using State = PDF::FileInfo::CloudStatus;
using Cases = QVector<VersionsDialog::Case>;

DownloadCommands::DownloadCommands(const Parts& parts, QWidget& widget) : parts(parts), widget(widget) {}

void DownloadCommands::ChooseFolder(const QStringList& ids)
{
    const auto dialog = new QFileDialog(&widget, tr("Download To"), parts.preferences.DownloadFolder());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this, [this, ids](const QString& folder) {
        parts.preferences.SetDownloadFolder(folder);
        Download(ids, folder);
    });
    dialog->open();
}

void DownloadCommands::Download(const QStringList& ids, const QString& folder)
{
    QVector<Obstructed> obstructed;
    QStringList changed;
    QStringList current;
    parts.message.Close(Topic::files); // of the last time
    QSet<QString> made;
    for (const QString& id : ids) {
        const QString target = folder.isEmpty() ? FolderFor(id) : folder;
        if (!made.contains(target)) {
            QDir().mkpath(target);
            made.insert(target);
        }
        const QString obstacle = parts.session.ObstacleTo(id, target);
        const auto index = parts.model.index(parts.model.RowOf(id));
        const auto state = static_cast<State>(index.data(Model::StateRole).toInt());
        const bool hasChanges = state == State::ChangedLocally || state == State::ChangedOnBothSides;
        const QFileInfo copy(index.data(Model::PathRole).toString());
        const bool isThere = copy.isFile() && copy.path() == QFileInfo(target).canonicalFilePath();
        if (!obstacle.isEmpty()) {
            obstructed.append({id, obstacle});
        } else if (isThere && hasChanges) {
            changed.append(id);
        } else if (isThere && state == State::InSync) {
            current.append(id);
        } else {
            parts.transfers.Download(id, target);
        }
    }
    if (!current.isEmpty()) {
        parts.message.Show(Topic::files,
                           current.size() == 1
                               ? tr("“%1” is up to date here.").arg(NameOf(parts.session, current.first()))
                               : tr("%n documents are up to date here.", nullptr, current.size()),
                           {}, {}, MessageBar::Kind::Notice);
    }
    if (!changed.isEmpty()) {
        emit ChangesMet(changed);
    }
    AskAboutTakenNames(obstructed);
}

QString DownloadCommands::FolderFor(const QString& id) const
{
    const QString path = parts.model.index(parts.model.RowOf(id)).data(Model::PathRole).toString();
    const bool isTheUsers = !path.isEmpty() && !path.startsWith(parts.session.ViewingFolder(id));
    return isTheUsers ? QFileInfo(path).absolutePath() : parts.preferences.DownloadFolder();
}

void DownloadCommands::AskAboutTakenNames(const QVector<Obstructed>& documents)
{
    enum { KeepBoth, ReplaceFile, OtherFolder };
    Cases cases;
    for (const Obstructed& each : documents) {
        const QString folder = QDir::toNativeSeparators(QFileInfo(each.path).path());
        cases.append({tr("There is another file “%1” in %2 already.")
                          .arg(Apps::Printable(QFileInfo(each.path).fileName()), Apps::Printable(folder)),
                      each.path, each.id});
    }
    if (cases.isEmpty()) {
        return;
    }
    const QVector<VersionsDialog::Choice> choices = {
        {tr("&Keep Both"), tr("The document gets a number in its name here."), true},
        {tr("&Replace"), tr("The file that is there is kept under another name."), true},
        {tr("&Other Folder…"), tr("You choose where the document is saved."), true}};
    const auto settle = [this](int choice, const Cases& about) {
        QStringList elsewhere;
        for (const auto& each : about) {
            if (choice == KeepBoth) {
                parts.transfers.DownloadBeside(each.id, QFileInfo(each.path).path());
            } else if (choice == ReplaceFile) {
                Replace(each.id, each.path);
            } else {
                elsewhere.append(each.id);
            }
        }
        if (!elsewhere.isEmpty()) {
            ChooseFolder(elsewhere);
        }
    };
    new VersionsDialog("obstacles", parts.session, cases, choices, settle, widget);
}

void DownloadCommands::Replace(const QString& id, const QString& path)
{
    const auto printable = [](const QString& file) { return Apps::Printable(QFileInfo(file).fileName()); };
    const QString kept =
        Host::MoveToOtherName(path, QSysInfo::machineHostName(), QDate::currentDate(), [this](const QString& name) {
            return !parts.session.DocumentNamed(name).isEmpty();
        }); // it is none of these
    if (kept.isEmpty()) {
        parts.message.Show(Topic::files, tr("“%1” was not downloaded.").arg(NameOf(parts.session, id)),
                           tr("What is there already cannot be given another name."));
        return;
    }
    parts.message.Show(Topic::files, tr("Your file “%1” is now called “%2”.").arg(printable(path), printable(kept)), {},
                       {}, MessageBar::Kind::Notice);
    parts.transfers.Download(id, QFileInfo(path).path());
}

} // namespace Norlis::Window
