#include "RemoveCommand.h"

#include "DocumentLookup.h"
#include "Text.h"

namespace Norlis::Terminal {

RemoveCommand::RemoveCommand(const Environment& environment) : BatchCommand(environment, "Removing") {}

void RemoveCommand::Work()
{
    connect(&Session(), &Host::CloudSession::DocumentRemoved, this, &RemoveCommand::OnRemoved);
    for (const auto& document : AllEntries(Session().Documents())) {
        seen[document.id] = document;
    }
    WithFreshList([this] { Begin(); });
}

void RemoveCommand::Begin()
{
    const auto found = FindDocuments(Session().Documents(), arguments.operands);
    for (const QString& problem : found.problems) {
        ReportFailure(problem);
    }
    for (const auto& document : found.documents) {
        if (!arguments.force && HasChanged(document)) {
            ReportFailure(QStringLiteral("Removing \"%1\" failed: it has changed since you saw it. Look at the newer "
                                         "version first, or use --force to remove it as it is now")
                              .arg(document.name));
            continue;
        }
        names[document.id] = document.name;
        Expect(document.id, document.name);
        Session().Remove(document.id);
    }
    EndIfDone();
}

bool RemoveCommand::HasChanged(const DocumentEntry& document) const
{
    const auto before = seen.constFind(document.id);
    if (before == seen.constEnd()) {
        return false;
    }
    const bool areVersionsKnown = !before->version.isEmpty() && !document.version.isEmpty();
    return before->size != document.size || (areVersionsKnown && before->version != document.version);
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
