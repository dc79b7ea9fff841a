#include "PreviewCommand.h"

#include "Text.h"

#include <base/Utf8.h>
#include <host/session/CloudFacts.h>

namespace Norlis::Terminal {

namespace {

const QStringList sizes = {"small", "medium", "large"};

} // namespace

PreviewCommand::PreviewCommand(const Environment& environment) : BatchCommand(environment, "Creating previews") {}

void PreviewCommand::Work()
{
    connect(&Session(), &Host::CloudSession::PreviewStored, this, &PreviewCommand::OnStored);
    // Of documents that are known the list need not be fetched.
    const auto found = FindDocuments(Session().Documents(), arguments.operands);
    if (found.problems.isEmpty()) {
        Begin(found);
    } else {
        WithFreshList([this] { Begin(FindDocuments(Session().Documents(), arguments.operands)); });
    }
}

void PreviewCommand::Begin(const FoundDocuments& found)
{
    for (const QString& problem : found.problems) {
        ReportFailure(problem);
    }
    for (const auto& document : found.documents) {
        Expect(document.id, document.name);
        Session().FetchPreviews(document.id);
    }
    EndIfDone();
}

void PreviewCommand::OnStored(const QString& id, const QString& size, const QString& path)
{
    if (!IsExpected(id)) {
        return;
    }
    previewPaths[id][size] = path;
    ShowProgress(id, previewPaths[id].size() * 100 / sizes.size());
    if (previewPaths[id].size() == sizes.size()) {
        Succeed(id);
        Show(id);
    }
}

void PreviewCommand::Show(const QString& id)
{
    const auto& paths = previewPaths[id];
    const auto* facts = Session().Facts(id);
    const QString name = facts ? FromUtf8(facts->name) : id;
    if (output.IsJson()) {
        QJsonObject previews;
        for (const QString& size : sizes) {
            previews[size] = paths.value(size);
        }
        output.Json(QJsonDocument(QJsonObject{{"id", id}, {"name", name}, {"previews", previews}}));
        return;
    }
    QString text = Printable(name) + '\n';
    for (const QString& size : sizes) {
        text += "  " + PadRight(size, 6) + "  " + Printable(paths.value(size)) + '\n';
    }
    output.Lines(text);
}

} // namespace Norlis::Terminal
