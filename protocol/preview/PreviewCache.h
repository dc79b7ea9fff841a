#pragma once

#include "RenderedPage.h"

#include <QSize>
#include <QString>

#include <optional>

namespace Norlis::Social {

/// Previews of first pages on disk, one PNG file for each version of a document. When they take more room than they
/// may, the oldest go.
class PreviewCache {
public:
    /// \param folder created when missing; an empty one keeps nothing
    /// \param limit  bytes
    explicit PreviewCache(const QString& folder, qint64 limit = 256 * 1024 * 1024);

    /// The kept preview, if it was made for a box at least as large as the given one.
    std::optional<RenderedPage> Find(const QString& document, const QString& version, const QSize& box);

    void Store(const QString& document, const QString& version, const QSize& box, const RenderedPage& page);

    void Remove(const QString& document, const QString& version);

private:
    QString PathOf(const QString& document, const QString& version) const;
    void MakeRoom();

    const QString folder;
    const qint64 limit;
    qint64 used = 0; ///< bytes
};

} // namespace Norlis::Social
