#pragma once

#include "BatchCommand.h"
#include "DocumentLookup.h"

namespace Norlis::Terminal {

/// Saves previews of documents and shows their paths.
class PreviewCommand : public BatchCommand {
    Q_OBJECT

public:
    explicit PreviewCommand(const Environment& environment);

protected:
    void Work() override;

private:
    void Begin(const FoundDocuments& found);
    void OnStored(const QString& id, const QString& size, const QString& path);
    void Show(const QString& id);

    QMap<QString, QMap<QString, QString>> previewPaths; ///< paths by size, by id of the document
};

} // namespace Norlis::Terminal
