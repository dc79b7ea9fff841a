#include "ChangesCommands.h"

#include "VersionsDialog.h"

#include <apps/common/PrintableText.h>
#include <apps/window/texts/KnownDocuments.h>
#include <apps/window/transfers/Transfers.h>
#include <apps/window/widgets/Questions.h>
#include <contracts/FileInfo.h>
#include <host/CloudDocumentsModel.h>
#include <host/session/CloudSession.h>

#include <utility>

namespace Norlis::Window {

using Model = Host::CloudDocumentsModel;
using State = PDF::FileInfo::CloudStatus;
using Cases = QVector<VersionsDialog::Case>;

ChangesCommands::ChangesCommands(const Parts& parts, QWidget& widget) : parts(parts), widget(widget)
{
    connect(&parts.session, &Host::CloudSession::Failed, this, &ChangesCommands::OnFailed);
    connect(&parts.session, &Host::CloudSession::ListRefreshed, this, &ChangesCommands::OnListRefreshed);
}

void ChangesCommands::Upload(const QStringList& ids)
{
    QStringList conflicts;
    for (const QString& id : ids) {
        unasked.remove(id);
        const int state = StateOf(id);
        if (state == static_cast<int>(State::ChangedOnBothSides) || state == static_cast<int>(State::ChangedInCloud)) {
            conflicts.append(id);
        } else {
            parts.transfers.UploadChanges(id);
        }
    }
    AskAboutConflicts(conflicts);
}

void ChangesCommands::UploadUnasked(const QString& id)
{
    unasked.insert(id);
    parts.transfers.UploadChanges(id);
}

void ChangesCommands::GiveUp(const QStringList& ids)
{
    QStringList names;
    for (const QString& id : ids) {
        names.append(NameOf(parts.session, id));
    }
    if (!ids.isEmpty()) {
        AskToUseCloud(widget, names, [this, ids] {
            for (const QString& id : ids) {
                parts.transfers.UseCloudVersion(id);
            }
        });
    }
}

void ChangesCommands::AskBeforeDownload(const QStringList& ids)
{
    QStringList conflicts;
    QStringList changed;
    for (const QString& id : ids) {
        (StateOf(id) == static_cast<int>(State::ChangedOnBothSides) ? conflicts : changed).append(id);
    }
    AskAboutConflicts(conflicts);
    AskAboutChanges(changed);
}

void ChangesCommands::AskAboutConflicts(const QStringList& ids)
{
    Cases cases;
    for (const QString& id : ids) {
        cases.append(
            {tr("“%1” was changed both here and in the cloud.").arg(NameOf(parts.session, id)), PathOf(id), id});
    }
    if (cases.isEmpty()) {
        return;
    }
    const QVector<VersionsDialog::Choice> choices = {
        {tr("&Keep Both"), tr("Yours becomes a new document, with this computer and the date in its name."), true},
        {tr("Use &Mine"), tr("The version in the cloud is lost.")},
        {tr("Use the C&loud’s"), tr("The version on this computer is lost.")}};
    const auto settle = [this](int choice, const Cases& about) {
        for (const auto& each : about) {
            if (choice == KeepBoth) {
                parts.transfers.KeepBoth(each.id);
            } else if (choice == UseMine) {
                parts.transfers.ReplaceInCloud(each.id);
            } else {
                parts.transfers.UseCloudVersion(each.id);
            }
        }
    };
    const auto question = new VersionsDialog("conflict", parts.session, cases, choices, settle, widget);
    connect(question, &QDialog::rejected, this, &ChangesCommands::LeftAlone);
}

void ChangesCommands::AskAboutChanges(const QStringList& ids)
{
    Cases cases;
    for (const QString& id : ids) {
        cases.append({tr("“%1” has changes on this computer that are not in the cloud.").arg(NameOf(parts.session, id)),
                      PathOf(id), id});
    }
    if (cases.isEmpty()) {
        return;
    }
    const QVector<VersionsDialog::Choice> choices = {
        {tr("&Upload Changes"), tr("The document in the cloud gets them."), true},
        {tr("Use the C&loud’s"), tr("The changes on this computer are lost.")}};
    const auto settle = [this](int choice, const Cases& about) {
        QStringList uploads;
        for (const auto& each : about) {
            if (choice == 0) {
                uploads.append(each.id);
            } else {
                parts.transfers.UseCloudVersion(each.id);
            }
        }
        Upload(uploads);
    };
    new VersionsDialog("localChanges", parts.session, cases, choices, settle, widget);
}

void ChangesCommands::OnFailed(const Host::CloudProblem& problem)
{
    if (problem.request == Host::CloudProblem::Request::Upload &&
        problem.cause.kind == Social::OAuth2::FailureKind::Conflict) {
        if (!unasked.remove(parts.session.DocumentAt(problem.subject))) { // otherwise a message tells of it
            conflicted.append(problem.subject);
        }
        parts.session.Refresh(); // what stands in the cloud has to be known before anybody is asked
    }
}

void ChangesCommands::OnListRefreshed()
{
    QStringList ids;
    const QStringList paths = std::exchange(conflicted, {});
    for (const QString& path : paths) {
        const QString id = parts.session.DocumentAt(path);
        if (StateOf(id) == static_cast<int>(State::ChangedOnBothSides)) {
            ids.append(id);
        }
    }
    AskAboutConflicts(ids);
}

int ChangesCommands::StateOf(const QString& id) const
{
    return parts.model.index(parts.model.RowOf(id)).data(Model::StateRole).toInt();
}

QString ChangesCommands::PathOf(const QString& id) const
{
    return parts.model.index(parts.model.RowOf(id)).data(Model::PathRole).toString();
}

} // namespace Norlis::Window
