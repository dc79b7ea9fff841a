#include "ListCommand.h"

#include "DocumentEntry.h"
#include "ExitStatus.h"
#include "Text.h"

#include <QStringList>

#include <array>

namespace Norlis::Terminal {

namespace {

constexpr int columnCount = 5;
constexpr int nameColumn = 0;
constexpr int sizeColumn = 1;
constexpr int minNameColumns = 20;
const auto gap = QStringLiteral("  ");

using Row = std::array<QString, columnCount>;

Row RowOf(const DocumentEntry& entry)
{
    return {Printable(entry.name), HumanSize(entry.size), TimeText(entry.modified), StateText(entry.state),
            Printable(entry.id)};
}

QString Table(std::vector<Row> rows, const Output& output)
{
    std::array<int, columnCount> widths = {};
    for (const Row& row : rows) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths[column] = qMax(widths[column], DisplayWidth(row[column]));
        }
    }
    if (output.IsTerminal()) {
        int others = 0;
        for (std::size_t column = nameColumn + 1; column < widths.size(); ++column) {
            others += gap.size() + widths[column];
        }
        widths[nameColumn] = qMin(widths[nameColumn], qMax(minNameColumns, output.Columns() - others));
    }
    QString text;
    for (Row& row : rows) {
        row[nameColumn] = PadRight(Shorten(row[nameColumn], widths[nameColumn]), widths[nameColumn]);
        row[sizeColumn] = row[sizeColumn].rightJustified(widths[sizeColumn]);
        for (std::size_t column = sizeColumn + 1; column + 1 < row.size(); ++column) {
            row[column] = PadRight(row[column], widths[column]);
        }
        for (std::size_t column = 0; column < row.size(); ++column) {
            text += (column == 0 ? QString() : gap) + row[column];
        }
        text += '\n';
    }
    return text;
}

/// One JSON array, with each entry on a line of its own for tools that read lines.
QString JsonList(const std::vector<DocumentEntry>& entries)
{
    QStringList objects;
    for (const auto& entry : entries) {
        objects << JsonText(QJsonDocument(JsonOf(entry)));
    }
    return objects.isEmpty() ? QStringLiteral("[]\n") : "[\n" + objects.join(",\n") + "\n]\n";
}

} // namespace

ListCommand::ListCommand(const Environment& environment) : SessionCommand(environment) {}

void ListCommand::Start()
{
    if (!arguments.offline) {
        SessionCommand::Start();
    } else if (account.Service().isEmpty()) {
        FailSignedOut();
    } else if (OpenSession()) {
        Show();
    }
}

void ListCommand::Work()
{
    connect(&Session(), &Host::CloudSession::ListRefreshed, this, &ListCommand::Show);
    Session().Refresh();
}

void ListCommand::Show()
{
    const auto entries = AllEntries(Session());
    if (arguments.namesOnly) { // which shows nobody what versions there are
        for (const auto& entry : entries) {
            output.Line(Printable(entry.name));
        }
        Finish(ExitStatus::success);
        return;
    }
    if (output.IsJson()) {
        output.Lines(JsonList(entries));
    } else if (entries.empty()) {
        output.Line("No documents.");
    } else {
        std::vector<Row> rows = {{"NAME", "SIZE", "MODIFIED", "STATE", "ID"}};
        for (const auto& entry : entries) {
            rows.push_back(RowOf(entry));
        }
        output.Lines(Table(std::move(rows), output));
    }
    Shown().Show(entries);
    Shown().Save(); // now, whatever becomes of this program while it ends
    Finish(ExitStatus::success);
}

} // namespace Norlis::Terminal
