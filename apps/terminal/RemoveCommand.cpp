#include "RemoveCommand.h"

#include "DocumentLookup.h"
#include "Text.h"

namespace Norlis::Terminal {

RemoveCommand::RemoveCommand(const Environment& environment) : BatchCommand(environment, "Removing") {}

void RemoveCommand::Work()
{
    connect(&Session(), &Host::CloudSession::DocumentRemoved, this, &RemoveCommand::OnRemoved);
    WithFreshList([this] { Begin(); });
}

void RemoveCommand::Begin()
{
    const auto found = FindDocuments(Session().Documents(), arguments.operands);
    for (const QString& problem : found.problems) {
        ReportFailure(problem);
    }
    for (const auto& document : found.documents) {
        names[document.id] = document.name;
        Expect(document.id, document.name);
        Session().Remove(document.id);
    }
    EndIfDone();
}

void RemoveCommand::OnRemoved(const QString& id)
{
    if (!IsExpected(id)) {
        return;
    }
    Succeed(id);
    if (output.IsJson()) {
        output.Json(QJsonDocument(QJsonObject{{"action", "removed"}, {"id", id}, {"name", names.value(id)}}));
    } else {
        output.Line("removed " + Printable(names.value(id)) + "  " + Printable(id));
    }
}

} // namespace Norlis::Terminal
