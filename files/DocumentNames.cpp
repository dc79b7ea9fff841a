#include "DocumentNames.h"

#include "AtomicFile.h"

#include <QCryptographicHash>
#include <QSet>

#include <algorithm>

namespace Norlis::Files {

namespace {

constexpr int maxNameBytes = 255; // the limit of nearly every file system

bool IsControl(QChar character)
{
    return character.unicode() < 0x20 || (character.unicode() >= 0x7f && character.unicode() < 0xa0);
}

/// Names that some systems take for a device, whatever suffix follows.
bool IsDeviceName(const QString& name)
{
    static const QSet<QString> devices = [] {
        QSet<QString> names = {"con", "prn", "aux", "nul"};
        for (int number = 1; number <= 9; ++number) {
            names << QStringLiteral("com%1").arg(number) << QStringLiteral("lpt%1").arg(number);
        }
        return names;
    }();
    return devices.contains(name.section('.', 0, 0).trimmed().toLower());
}

/// Where the suffix begins; the length of the name when there is none, or when what follows the last dot is so long
/// that nothing else would fit beside it.
int SuffixPosition(const QString& name)
{
    const int dot = name.lastIndexOf('.');
    return dot > 0 && name.mid(dot).toUtf8().size() <= maxNameBytes / 2 ? dot : name.size();
}

} // namespace

std::optional<QString> ValidateName(const QString& name)
{
    if (name.isEmpty()) {
        return QStringLiteral("is empty");
    }
    if (name == "." || name == "..") {
        return QStringLiteral("refers to a folder");
    }
    if (name.contains('/') || name.contains('\\')) {
        return QStringLiteral("contains a path separator");
    }
    if (std::any_of(name.begin(), name.end(), IsControl)) {
        return QStringLiteral("contains a control character");
    }
    if (IsDeviceName(name)) {
        return QStringLiteral("is a device name on some systems");
    }
    if ((name.startsWith(".norlis-") && name.endsWith(".part")) || AtomicFile::IsTemporaryName(name)) {
        return QStringLiteral("is one that is kept for unfinished files");
    }
    if (name.toUtf8().size() > maxNameBytes) {
        return QStringLiteral("is longer than %1 bytes").arg(maxNameBytes);
    }
    return std::nullopt;
}

QString NumberedName(const QString& name, int number)
{
    const int suffixPosition = SuffixPosition(name);
    const QString ending = QStringLiteral(" (%1)").arg(number) + name.mid(suffixPosition);
    QString stem = name.left(suffixPosition);
    while (!stem.isEmpty() && (stem + ending).toUtf8().size() > maxNameBytes) {
        stem.chop(stem.size() > 1 && qAsConst(stem).back().isLowSurrogate() ? 2 : 1);
    }
    return stem + ending;
}

QString IdOfName(const QString& name)
{
    // 75 bits are beyond any chance of a collision, and 15 characters fit into a std::string without an allocation: the
    // file list compares ids one after the other.
    constexpr int length = 15;
    constexpr auto alphabet = "abcdefghijklmnopqrstuvwxyz234567"; // one case, for file systems that ignore it
    const QByteArray hash = QCryptographicHash::hash(name.toUtf8(), QCryptographicHash::Sha256);

    QString id;
    quint32 bits = 0;
    int bitCount = 0;
    for (int next = 0; id.size() < length;) {
        if (bitCount < 5) {
            bits = (bits << 8) | static_cast<quint8>(hash[next++]);
            bitCount += 8;
        }
        bitCount -= 5;
        id += QLatin1Char(alphabet[(bits >> bitCount) & 31U]);
    }
    return id;
}

} // namespace Norlis::Files
