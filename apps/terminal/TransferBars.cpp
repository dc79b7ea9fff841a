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
constexpr int columnsForSpeed = 78;

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

/// As in "8.1 MiB/s    47 s"; nothing where it is not known or there is no room.
QString SpeedText(const Apps::TransferMeter& meter, qint64 remaining, int columns, qint64 time)
{
    const auto rate = meter.Rate(time);
    const auto left = meter.TimeLeft(remaining, time);
    if (columns < columnsForSpeed || !rate || !left) {
        return {};
    }
    constexpr qint64 minute = 60;
    const QString timeText = *left < 2 * minute ? QStringLiteral("%1 s").arg(*left)
                                                : QStringLiteral("%1 min").arg((*left + minute - 1) / minute);
    return QStringLiteral("%1  %2").arg(HumanSize(static_cast<quint64>(*rate)) + "/s", 13).arg(timeText, 8);
}

} // namespace

qint64 TransferBars::Transfer::Transferred() const
{
    return Apps::TransferMeter::BytesAt(percent, size);
}

TransferBars::TransferBars(const QString& verb) : verb(verb) {}

void TransferBars::Add(const QString& key, const QString& name, qint64 size)
{
    running.push_back({key, Printable(name), 0, size});
    ++addedCount;
    addedSize += size;
}

void TransferBars::SetProgress(const QString& key, int percent, qint64 time)
{
    const auto transfer = Find(key);
    if (transfer == running.end()) {
        return;
    }
    transferred -= transfer->Transferred();
    transfer->percent = qBound(0, percent, 100);
    transferred += transfer->Transferred();
    transfer->meter.Note(transfer->Transferred(), time);
    meter.Note(transferred, time);
}

void TransferBars::Remove(const QString& key)
{
    const auto transfer = Find(key);
    if (transfer != running.end()) {
        transferred += transfer->size - transfer->Transferred(); // also of one that failed: nothing more comes of it
        running.erase(transfer);
    }
}

QStringList TransferBars::Lines(int columns, int rows, qint64 time) const
{
    QStringList lines;
    const int usableColumns = columns - 1; // some terminals wrap as soon as the last column is written
    const auto count = static_cast<int>(running.size());
    if (count == 0 || rows <= reservedRows) {
        return lines;
    }
    if (count <= qMin(maxBars, rows - reservedRows)) {
        for (const auto& transfer : running) {
            const QString speed =
                SpeedText(transfer.meter, transfer.size - transfer.Transferred(), usableColumns, time);
            lines << BarLine(transfer.name, transfer.percent, usableColumns - speed.size()) + speed;
        }
    } else {
        const int doneCount = addedCount - count;
        int percents = doneCount * 100;
        for (const auto& transfer : running) {
            percents += transfer.percent;
        }
        const auto text = QStringLiteral("%1, %2 of %3 done").arg(verb).arg(doneCount).arg(addedCount);
        const QString speed = SpeedText(meter, addedSize - transferred, usableColumns, time);
        lines << BarLine(text, percents / addedCount, usableColumns - speed.size()) + speed;
    }
    lines.removeAll({});
    return lines;
}

std::vector<TransferBars::Transfer>::iterator TransferBars::Find(const QString& key)
{
    return std::find_if(running.begin(), running.end(), [&](const Transfer& transfer) { return transfer.key == key; });
}

} // namespace Norlis::Terminal
