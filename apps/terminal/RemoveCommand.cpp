#include "RemoveCommand.h"

#include "DocumentLookup.h"
#include "Text.h"

#include <host/session/CloudFacts.h>

#include <QJsonDocument>
#include <QJsonObject>

namespace Norlis::Terminal {

RemoveCommand::RemoveCommand(const Environment& environment) : BatchCommand(environment, "Removing") {}

void RemoveCommand::Work()
{
    connect(&Session(), &Host::CloudSession::DocumentRemoved, this, &RemoveCommand::OnRemoved);
    for (const auto& document : AllEntries(Session())) {
        before[document.id] = document;
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
        if (!arguments.force && !MayRemove(document.id)) {
            ReportFailure(QStringLiteral("Removing \"%1\" failed: it has changed since you saw it. Look at the newer "
                                         "version first (run: norlis-cloud list), or use --force to remove it as it "
                                         "is now")
                              .arg(document.name));
            continue;
        }
        names[document.id] = document.name;
        Expect(document.id, document.name);
        Session().Remove(document.id);
    }
    EndIfDone();
}

bool RemoveCommand::MayRemove(const QString& id)
{
    const auto held = before.constFind(id);
    const auto* now = Session().Facts(id);
    auto seen = Shown().Of(id);
    if (!seen && held != before.constEnd()) {
        seen = {held->size, held->version};
    }
    if (Shown().IsDamaged()) {
        return false;
    }
    if (!seen || !now) {
        return true; // whoever names a document that no list has shown means it as it is
    }
    const auto version = QString::fromStdString(now->hash);
    const bool areVersionsKnown = !seen->version.isEmpty() && !version.isEmpty();
    const bool isSame = seen->size == now->size && (!areVersionsKnown || seen->version == version);
    if (!isSame && held != before.constEnd()) {
        Shown().NoteUnlessKnown(*held); // the list has the newer version now, which nobody has seen
    }
    return isSame;
}

void RemoveCommand::OnRemoved(const QString& id)
{
    if (!IsExpected(id)) {
        return;
    }
    Shown().Forget(id);
    Succeed(id);
    if (output.IsJson()) {
        output.Json(QJsonDocument(QJsonObject{{"action", "removed"}, {"id", id}, {"name", names.value(id)}}));
    } else {
        output.Line("removed " + Printable(names.value(id)) + "  " + Printable(id));
    }
}

} // namespace Norlis::Terminal
