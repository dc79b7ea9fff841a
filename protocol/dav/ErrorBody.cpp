#include "ErrorBody.h"

#include <QXmlStreamReader>

#include <algorithm>

namespace Norlis::Social {

namespace {

constexpr int longestBody = 64 * 1024; // bytes that are looked at
constexpr int longestMessage = 300;    // UTF-16 units

const QLatin1String davNamespace("DAV:");

/// Both are the texts that their servers write for people.
bool IsMessage(const QXmlStreamReader& reader)
{
    return (reader.name() == QLatin1String("message") &&
            reader.namespaceUri() == QLatin1String("http://sabredav.org/ns")) ||
           (reader.name() == QLatin1String("human-readable") &&
            reader.namespaceUri() == QLatin1String("http://apache.org/dav/xmlns"));
}

/// Secrets go first: cut or tidied, nothing would know them again.
QString ForPeople(const QString& text, const Secrets& secrets)
{
    QString tidied = Tidied(secrets.Redact(text));
    if (tidied.size() > longestMessage) {
        tidied.truncate(qAsConst(tidied)[longestMessage - 1].isHighSurrogate() ? longestMessage - 1 : longestMessage);
    }
    return tidied;
}

} // namespace

QString Tidied(QString text)
{
    const auto isUnprintable = [](QChar character) {
        return character.category() == QChar::Other_Control || character.category() == QChar::Other_Format;
    };
    std::replace_if(text.begin(), text.end(), isUnprintable, QChar(' '));
    return text.simplified();
}

QString MessageOf(const QByteArray& body, const Secrets& secrets)
{
    QXmlStreamReader reader(body.left(longestBody).trimmed());
    if (!reader.readNextStartElement() || reader.name() != QLatin1String("error") ||
        reader.namespaceUri() != davNamespace) {
        return {};
    }
    QString condition;
    while (reader.readNextStartElement()) {
        if (IsMessage(reader)) {
            const QString message = ForPeople(reader.readElementText(QXmlStreamReader::SkipChildElements), secrets);
            if (!message.isEmpty()) {
                return message;
            }
            continue;
        }
        if (condition.isEmpty() && reader.namespaceUri() == davNamespace) {
            condition = ForPeople(reader.name().toString(), secrets);
        }
        reader.skipCurrentElement();
    }
    return condition;
}

} // namespace Norlis::Social
