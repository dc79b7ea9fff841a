#include "IniFormat.h"

#include <QFileDevice>
#include <QHash>
#include <QUrl>

#include <algorithm>
#include <cctype>

namespace Norlis::Host {

namespace {

constexpr auto plainCharacters = "-._~:/@%+"; // beside letters and digits, in a value without quotation marks

bool IsPlain(QChar character)
{
    const char latin = character.toLatin1();
    return latin != 0 && (std::isalnum(static_cast<unsigned char>(latin)) != 0 ||
                          QByteArray::fromRawData(plainCharacters, qstrlen(plainCharacters)).contains(latin));
}

bool IsHexadecimal(QChar character)
{
    return QStringLiteral("0123456789abcdefABCDEF").contains(character);
}

QByteArray Quoted(const QString& value)
{
    if (std::all_of(value.begin(), value.end(), IsPlain) && !value.startsWith('@')) {
        return value.toLatin1();
    }
    QByteArray text = "\"";
    bool isAfterNumber = false; // which goes on as far as there are digits
    for (const QChar character : value) {
        if (character < ' ' || character > '~' || (isAfterNumber && IsHexadecimal(character))) {
            text += "\\x" + QByteArray::number(character.unicode(), 16);
            isAfterNumber = true;
            continue;
        }
        isAfterNumber = false;
        if (character == '"' || character == '\\') {
            text += '\\';
        }
        text += character.toLatin1();
    }
    return text + '"';
}

/// Nothing for what is no text, such as a list.
QVariant Unquoted(const QString& text)
{
    if (!text.startsWith('"')) {
        return text.contains(',') || text.startsWith('@') ? QVariant() : QVariant(text);
    }
    QString value;
    for (int at = 1; at < text.size() && text[at] != '"'; ++at) {
        if (text[at] != '\\' || at + 1 == text.size()) {
            value += text[at];
            continue;
        }
        ++at;
        if (text[at] != 'x') {
            static const QHash<QChar, QChar> controls = {{'n', '\n'}, {'r', '\r'}, {'t', '\t'}};
            value += controls.value(text[at], text[at]);
            continue;
        }
        int end = at + 1;
        while (end < text.size() && IsHexadecimal(text[end])) {
            ++end;
        }
        value += QChar(text.mid(at + 1, end - at - 1).toUShort(nullptr, 16));
        at = end - 1;
    }
    return value;
}

/// The group, and the rest of the key as it is written below it.
std::pair<QByteArray, QByteArray> Placed(const QString& key)
{
    const auto encoded = [](const QString& name) { return QUrl::toPercentEncoding(name, "/").replace('/', '\\'); };
    const int separator = key.indexOf('/');
    return separator < 0 ? std::pair(QByteArray("General"), encoded(key))
                         : std::pair(encoded(key.left(separator)), encoded(key.mid(separator + 1)));
}

bool Read(QIODevice& device, QSettings::SettingsMap& values)
{
    QString group;
    while (!device.atEnd()) {
        const QString line = QString::fromUtf8(device.readLine()).trimmed(); // as Qt 6 writes; Qt 5 keeps to ASCII
        const int equals = line.indexOf('=');
        if (line.startsWith('[') && line.endsWith(']')) {
            group = line.mid(1, line.size() - 2);
        } else if (equals > 0 && !line.startsWith(';') && !line.startsWith('#')) {
            const QString name = (group == "General" ? QString() : group + '/') + line.left(equals).trimmed();
            values[QUrl::fromPercentEncoding(name.toUtf8().replace('\\', '/'))] =
                Unquoted(line.mid(equals + 1).trimmed());
        }
    }
    return true; // a line that cannot be read says nothing
}

bool Write(QIODevice& device, const QSettings::SettingsMap& values)
{
    QByteArray text;
    QByteArray group;
    for (auto value = values.begin(); value != values.end(); ++value) {
        const auto [valueGroup, name] = Placed(value.key());
        if (group != valueGroup) {
            text += (text.isEmpty() ? "[" : "\n[") + valueGroup + "]\n";
            group = valueGroup;
        }
        text += name + '=' + Quoted(value.value().toString()) + '\n';
    }
    // Flushed here: Qt does not notice that there was no room for what is still in the buffer.
    auto* file = qobject_cast<QFileDevice*>(&device);
    return device.write(text) == text.size() && file && file->flush();
}

} // namespace

QSettings::Format WholeIniFormat()
{
    static const auto format = QSettings::registerFormat("ini", Read, Write, Qt::CaseSensitive);
    return format;
}

} // namespace Norlis::Host
