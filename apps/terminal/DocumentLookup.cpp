#include "DocumentLookup.h"

#include <QMultiHash>
#include <QSet>

#include <algorithm>

namespace Norlis::Terminal {

namespace {

QMultiHash<QString, QString> IdsByName(const PDF::AbstractFileManager& documents)
{
    QMultiHash<QString, QString> ids;
    for (int index = 0; index < documents.FilesCount(); ++index) {
        ids.insert(documents.GetDocumentName(index), documents.GetDocumentId(index));
    }
    return ids;
}

} // namespace

FoundDocuments FindDocuments(const PDF::AbstractFileManager& documents, const QStringList& words)
{
    FoundDocuments found;
    QSet<QString> seen;
    const auto add = [&](const DocumentEntry& entry) {
        if (!seen.contains(entry.id)) {
            seen.insert(entry.id);
            found.documents.push_back(entry);
        }
    };
    const auto idsByName = IdsByName(documents);
    for (const QString& word : words) {
        QStringList ids = EntryOf(documents, word) ? QStringList(word) : QStringList(idsByName.values(word));
        if (ids.size() == 1) {
            if (const auto entry = EntryOf(documents, ids.constFirst())) {
                add(*entry);
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
