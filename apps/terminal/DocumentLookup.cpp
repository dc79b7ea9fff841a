#include "DocumentLookup.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace Norlis::Terminal {

FoundDocuments FindDocuments(const PDF::AbstractFileManager& documents, const QStringList& words)
{
    QHash<QString, QString> names; // by id
    QMultiHash<QString, QString> idsByName;
    for (int index = 0; index < documents.FilesCount(); ++index) {
        const auto id = documents.GetDocumentId(index);
        const auto name = documents.GetDocumentName(index);
        names.insert(id, name);
        idsByName.insert(name, id);
    }
    FoundDocuments found;
    QSet<QString> seen;
    for (const QString& word : words) {
        QStringList ids = names.contains(word) ? QStringList(word) : QStringList(idsByName.values(word));
        if (ids.size() == 1) {
            const QString& id = ids.constFirst();
            if (!seen.contains(id)) {
                seen.insert(id);
                found.documents.push_back({id, names.value(id)});
            }
        } else if (ids.isEmpty()) {
            found.problems
                << QStringLiteral("There is no document \"%1\" in the cloud. Run: norlis-cloud list").arg(word);
        } else {
            std::sort(ids.begin(), ids.end());
            found.problems << QStringLiteral("Several documents are named \"%1\". Choose one by its id: %2")
                                  .arg(word, ids.join(", "));
        }
    }
    return found;
}

} // namespace Norlis::Terminal
