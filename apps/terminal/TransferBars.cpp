#include "TransferBars.h"

#include "Text.h"

#include <algorithm>

namespace Norlis::Terminal {

namespace {

constexpr int maxBars = 6;
constexpr int reservedRows = 2;
constexpr int percentColumns = 4;
constexpr int minNameColumns = 8;
constexpr int minBarColumns = 5;
constexpr int maxBarColumns = 30;

QString Bar(int percent, int columns)
{
    const int filled = (columns - 2) * percent / 100;
    return '[' + QString(filled, '#') + QString(columns - 2 - filled, '.') + ']';
}

/// Name, bar and percentage; in a narrow window the bar and then the name are left out.
QString BarLine(const QString& name, int percent, int columns)
{
    const QString number = QStringLiteral("%1%").arg(percent, percentColumns - 1);
    if (columns < percentColumns) {
        return {};
    }
    int left = columns - percentColumns - 1;
    if (left < minNameColumns) {
        return number;
    }
    QString bar;
    if (left >= minNameColumns + 1 + minBarColumns) {
        const int barColumns = qBound(minBarColumns, left / 2, maxBarColumns);
        bar = Bar(percent, barColumns) + ' ';
        left -= barColumns + 1;
    }
    return PadRight(Shorten(name, left), left) + ' ' + bar + number;
}

} // namespace

TransferBars::TransferBars(const QString& verb) : verb(verb) {}

void TransferBars::Add(const QString& key, const QString& name)
{
    running.push_back({key, Printable(name), 0});
    ++addedCount;
}

void TransferBars::SetProgress(const QString& key, int percent)
{
    const auto transfer = Find(key);
    if (transfer != running.end()) {
        transfer->percent = qBound(0, percent, 100);
    }
}

void TransferBars::Remove(const QString& key)
{
    const auto transfer = Find(key);
    if (transfer != running.end()) {
        running.erase(transfer);
    }
}

QStringList TransferBars::Lines(int columns, int rows) const
{
    QStringList lines;
    const int usableColumns = columns - 1; // some terminals wrap as soon as the last column is written
    const auto count = static_cast<int>(running.size());
    if (count == 0 || rows <= reservedRows) {
        return lines;
    }
    if (count <= qMin(maxBars, rows - reservedRows)) {
        for (const auto& transfer : running) {
            lines << BarLine(transfer.name, transfer.percent, usableColumns);
        }
    } else {
        const int doneCount = addedCount - count;
        int percents = doneCount * 100;
        for (const auto& transfer : running) {
            percents += transfer.percent;
        }
        const auto text = QStringLiteral("%1, %2 of %3 done").arg(verb).arg(doneCount).arg(addedCount);
        lines << BarLine(text, percents / addedCount, usableColumns);
    }
    lines.removeAll({});
    return lines;
}

std::vector<TransferBars::Transfer>::iterator TransferBars::Find(const QString& key)
{
    return std::find_if(running.begin(), running.end(), [&](const Transfer& transfer) { return transfer.key == key; });
}

} // namespace Norlis::Terminal
