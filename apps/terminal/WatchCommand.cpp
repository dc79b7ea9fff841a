#include "WatchCommand.h"

#include "DocumentEntry.h"
#include "ExitStatus.h"
#include "ProblemText.h"
#include "Text.h"

#include <QDateTime>
#include <QJsonObject>

#include <chrono>

namespace Norlis::Terminal {

WatchCommand::WatchCommand(const Environment& environment) : SessionCommand(environment) {}

QString WatchCommand::DataFolder() const
{
    return SessionCommand::DataFolder() + "/watch";
}

void WatchCommand::Work()
{
    const auto& documents = Session().Documents();
    for (int index = 0; index < documents.FilesCount(); ++index) {
        names[documents.GetDocumentId(index)] = documents.GetDocumentName(index);
    }
    connect(&Session(), &Host::CloudSession::ListRefreshed, this, &WatchCommand::Show);
    Session().Refresh();
    Session().RefreshEvery(std::chrono::seconds(arguments.interval));
}

void WatchCommand::OnFailed(const Host::CloudProblem& problem)
{
    output.Error(ProblemText(problem));
    if (!Session().IsSignedIn()) {
        Finish(ExitStatus::failure); // asking again would be pointless
    }
}

void WatchCommand::Show(const QStringList& added, const QStringList& changed, const QStringList& removed)
{
    for (const QString& id : removed) {
        ShowChange("removed", id);
        names.remove(id);
    }
    for (const QString& id : added) {
        ShowChange("added", id);
    }
    for (const QString& id : changed) {
        ShowChange("changed", id);
    }
    if (!output.WriteError().isEmpty()) {
        Finish(ExitStatus::failure); // nobody reads the output now
    }
}

void WatchCommand::ShowChange(const QString& what, const QString& id)
{
    const auto entry = EntryOf(Session(), id);
    if (entry) {
        names[id] = entry->name;
    }
    const auto now = QDateTime::currentDateTime();
    if (output.IsJson()) {
        QJsonObject change = entry ? JsonOf(*entry) : QJsonObject{{"id", id}, {"name", names.value(id)}};
        change["change"] = what;
        change["at"] = now.toUTC().toString(Qt::ISODate);
        output.Json(QJsonDocument(change));
    } else {
        const QString size = entry ? " (" + HumanSize(entry->size) + ')' : QString();
        output.Line(now.toString("HH:mm:ss") + "  " + PadRight(what, 7) + "  " + Printable(names.value(id)) + size);
    }
}

} // namespace Norlis::Terminal
