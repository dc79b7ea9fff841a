#pragma once

#include "BatchCommand.h"

#include <QSet>

namespace Norlis::Terminal {

/// Sends files: as new documents, or in the place of the document whose local copy they are.
class UploadCommand : public BatchCommand {
    Q_OBJECT

public:
    explicit UploadCommand(const Environment& environment);

protected:
    void Work() override;
    bool GiveUp(const QString& path) override;

private:
    void Begin();
    void BeginKnown(const QString& path, const QString& id);
    void OnUploaded(const QString& path, const QString& id);
    void Show(const QString& action, const QString& path, const QString& id);
    QString KnownDocument(const QString& path);

    QStringList paths;     ///< absolute, each once
    QSet<QString> updates; ///< paths of documents that are replaced
};

} // namespace Norlis::Terminal
