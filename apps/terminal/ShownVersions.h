#pragma once

#include "DocumentEntry.h"

#include <QHash>

#include <optional>

namespace Norlis::Terminal {

/// Which versions of documents the user has seen: those that the last `list` showed, and those that were sent or
/// fetched since. Every command fetches the list, so what the session holds of a document is often a version that was
/// shown to nobody.
class ShownVersions {
public:
    struct Version {
        quint64 size = 0; ///< bytes
        QString version;  ///< see DocumentEntry

        bool operator==(const Version& other) const
        {
            return size == other.size && version == other.version;
        }
    };

    /// \param dataFolder where they are kept between runs
    explicit ShownVersions(const QString& dataFolder);

    /// What was kept cannot be read, so what the user has seen is not known until the next list.
    bool IsDamaged() const;

    /// Nothing for a document that was never shown.
    std::optional<Version> Of(const QString& id) const;

    /// A list has shown these, and no others.
    void Show(const std::vector<DocumentEntry>& entries);

    /// The user has seen this version.
    void Note(const DocumentEntry& entry);

    /// As Note, unless it is known already which version the user has seen.
    void NoteUnlessKnown(const DocumentEntry& entry);

    void Forget(const QString& id);

    /// When it fails, the user has to look once more.
    void Save();

private:
    const QString path;
    QHash<QString, Version> versions;
    bool isChanged = false;
    bool isDamaged = false;
};

} // namespace Norlis::Terminal
