#pragma once

#include <contracts/AbstractFileManager.h>

#include <QStringList>

#include <vector>

namespace Norlis::Terminal {

struct FoundDocument {
    QString id;
    QString name;
};

/// The documents that the user named, and an error for each name that could not be resolved.
struct FoundDocuments {
    std::vector<FoundDocument> documents; ///< without duplicates, in the user's order
    QStringList problems;
};

/// Looks each word up as an id, or else as a name that only one document has.
FoundDocuments FindDocuments(const PDF::AbstractFileManager& documents, const QStringList& words);

} // namespace Norlis::Terminal
