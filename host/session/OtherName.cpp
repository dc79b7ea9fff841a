#include "OtherName.h"

#include <files/FilePlacing.h>

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace Norlis::Host {

namespace {

constexpr int longestName = 235; // bytes; some servers have less than 255

/// Without what is not allowed in the name of a file on every system.
QString Cleaned(const QString& host)
{
    static const QRegularExpression others("[^A-Za-z0-9._-]");
    const QString cleaned = QString(host).remove(others);
    return cleaned.isEmpty() ? QStringLiteral("another computer") : cleaned.left(60);
}

/// Shortened at the end of a character to a length in bytes.
QString Shortened(QString text, int length)
{
    while (text.toUtf8().size() > length) {
        text.chop(text.at(text.size() - 1).isLowSurrogate() ? 2 : 1);
    }
    return text;
}

} // namespace

QString OtherNameOf(const QString& name, const QString& host, const QDate& date,
                    const std::function<bool(const QString&)>& isTaken)
{
    const QFileInfo file(name);
    const QString suffix = file.suffix().isEmpty() ? QString() : '.' + file.suffix();
    const QString base = name.left(name.size() - suffix.size());
    const QString origin = QStringLiteral(" (from %1, %2)").arg(Cleaned(host), date.toString(Qt::ISODate));
    for (int number = 1;; ++number) {
        const QString end = origin + (number == 1 ? QString() : ' ' + QString::number(number)) + suffix;
        const QString other = Shortened(base, qMax(1, longestName - end.toUtf8().size())) + end;
        if (!isTaken(other)) {
            return other;
        }
    }
}

QString MoveToOtherName(const QString& path, const QString& host, const QDate& date,
                        const std::function<bool(const QString&)>& isTaken)
{
    constexpr int most = 100;
    const QFileInfo file(path);
    QStringList taken; // by what nobody has seen before
    while (file.isFile() && !file.isSymLink() && taken.size() < most) {
        const QString name = OtherNameOf(file.fileName(), host, date, [&](const QString& other) {
            const QFileInfo there(file.dir().filePath(other));
            return taken.contains(other) || isTaken(other) || there.exists() ||
                   there.isSymLink(); // which may lead nowhere
        });
        const auto failure = Files::MoveUnlessTaken(path, file.dir().filePath(name));
        if (!failure) {
            return file.dir().filePath(name);
        }
        if (failure != std::errc::file_exists) {
            return {};
        }
        taken.append(name);
    }
    return {};
}

} // namespace Norlis::Host
