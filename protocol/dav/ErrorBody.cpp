#include "ErrorBody.h"

#include <QXmlStreamReader>

#include <algorithm>

namespace Norlis::Social {

namespace {

constexpr int maxBodySize = 64 * 1024; // bytes that are read
constexpr int maxMessageLength = 300;  // UTF-16 units

const QLatin1String davNamespace("DAV:");

/// Texts for the user, of two kinds of servers.
bool IsMessage(const QXmlStreamReader& reader)
{
    return (reader.name() == QLatin1String("message") &&
            reader.namespaceUri() == QLatin1String("http://sabredav.org/ns")) ||
           (reader.name() == QLatin1String("human-readable") &&
            reader.namespaceUri() == QLatin1String("http://apache.org/dav/xmlns"));
}

/// Secrets are replaced first: cut or tidied, they would not be recognised.
QString ForPeople(const QString& text, const Secrets& secrets)
{
    QString tidied = Tidied(secrets.Redact(text));
    if (tidied.size() > maxMessageLength) {
        tidied.truncate(qAsConst(tidied)[maxMessageLength - 1].isHighSurrogate() ? maxMessageLength - 1
                                                                                 : maxMessageLength);
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
    QXmlStreamReader reader(body.left(maxBodySize).trimmed());
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
