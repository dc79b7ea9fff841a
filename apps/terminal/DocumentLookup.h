#pragma once

#include "DocumentEntry.h"

#include <QStringList>

namespace Norlis::Terminal {

/// Documents that a user named, and what is wrong with the other words.
struct FoundDocuments {
    std::vector<DocumentEntry> documents; ///< each once, in the user's order
    QStringList problems;
};

/// Finds each word as an id or else as a name, which must be the name of one document only.
FoundDocuments FindDocuments(const PDF::AbstractFileManager& documents, const QStringList& words);

} // namespace Norlis::Terminal
