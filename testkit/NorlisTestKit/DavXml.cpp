#include "DavXml.h"

#include <QXmlStreamReader>

namespace Norlis::TestKit {

std::optional<std::vector<PropertyName>> WantedProperties(const QByteArray& body)
{
    std::vector<PropertyName> names;
    QXmlStreamReader reader(body);
    int depth = 0;
    while (!body.isEmpty() && !reader.atEnd()) {
        const auto token = reader.readNext();
        depth += token == QXmlStreamReader::StartElement ? 1 : token == QXmlStreamReader::EndElement ? -1 : 0;
        if (token == QXmlStreamReader::StartElement && depth == 3) {
            names.emplace_back(reader.namespaceUri().toString(), reader.name().toString());
        }
    }
    return reader.hasError() ? std::nullopt : std::optional(names);
}

std::optional<std::map<PropertyName, std::optional<QByteArray>>> PatchedProperties(const QByteArray& body)
{
    std::map<PropertyName, std::optional<QByteArray>> patch;
    QXmlStreamReader reader(body);
    bool isRemoval = false;
    bool isInside = false;
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::StartElement && isInside) {
            const PropertyName name(reader.namespaceUri().toString(), reader.name().toString());
            const QByteArray text = reader.readElementText(QXmlStreamReader::IncludeChildElements).toUtf8();
            patch[name] = isRemoval ? std::nullopt : std::optional(text);
        } else if (token == QXmlStreamReader::StartElement && reader.namespaceUri() == QLatin1String("DAV:")) {
            isRemoval =
                reader.name() == QLatin1String("remove") || (isRemoval && reader.name() != QLatin1String("set"));
            isInside = reader.name() == QLatin1String("prop");
        } else if (token == QXmlStreamReader::EndElement) {
            isInside = false;
        }
    }
    return reader.hasError() ? std::nullopt : std::optional(patch);
}

QByteArray Element(const PropertyName& name, const QByteArray& content)
{
    return "<x:" + name.second.toUtf8() + " xmlns:x=\"" + EscapedForXml(name.first.toUtf8()) + "\">" + content +
           "</x:" + name.second.toUtf8() + '>';
}

QByteArray PropStat(const QByteArray& properties, const QByteArray& status)
{
    return properties.isEmpty() ? QByteArray()
                                : "<d:propstat><d:prop>" + properties + "</d:prop><d:status>HTTP/1.1 " + status +
                                      "</d:status></d:propstat>";
}

ServerResponse MultiStatus(const QByteArray& responses)
{
    return {207,
            {{"Content-Type", "application/xml; charset=utf-8"}},
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<d:multistatus xmlns:d=\"DAV:\">" + responses +
                "</d:multistatus>\n"};
}

} // namespace Norlis::TestKit
