#include "DavResponses.h"

#include "MultiStatusParser.h"

namespace Norlis::Social {

std::optional<DavEntry> EntryOfDepth0(const HttpResponse& response, const DavPath& path)
{
    MultiStatusParser parser(path);
    if (response.Status() != 207 || !parser.Add(response.body) || !parser.Finish()) {
        return std::nullopt;
    }
    for (const DavEntry& entry : parser.TakeEntries()) {
        if (entry.isSelf) {
            return entry;
        }
    }
    return std::nullopt;
}

bool IsPropertyStored(const HttpResponse& response)
{
    if (response.Status() != 207) {
        return response.HasSucceeded();
    }
    QXmlStreamReader reader(response.body);
    bool isStored = false;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == QLatin1String("status") &&
            reader.namespaceUri() == QLatin1String("DAV:")) {
            isStored = reader.readElementText().section(' ', 1, 1).startsWith('2');
            if (!isStored) {
                return false;
            }
        }
    }
    return isStored && !reader.hasError();
}

bool IsMissing(int status)
{
    return status == 404 || status == 410;
}

} // namespace Norlis::Social
