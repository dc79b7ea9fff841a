#pragma once

#include "BatchCommand.h"

#include <QSet>

namespace Norlis::Terminal {

/// Uploads files: as new documents, or as updates of the documents whose local copies they are.
class UploadCommand : public BatchCommand {
    Q_OBJECT

public:
    explicit UploadCommand(const Environment& environment);

protected:
    void Work() override;
    bool CancelJob(const QString& path) override;

private:
    void Begin();
    void BeginKnown(const QString& path, const QString& id);
    void BeginNew(const QStringList& files);
    void OfferNew(const QString& path);
    void DecideNew(const QString& path, const QString& id, OnConflict choice);
    void DecideKnown(const QString& path, const QString& id, const QString& problem, OnConflict choice);

    /// The session names the upload of a local copy by the path in the list.
    QString JobOfCopy(const QString& path, const QString& id);
    void OnUploaded(const QString& path, const QString& id);
    void OnFetched(const QString& id);
    void Show(const QString& action, const QString& path, const QString& id);
    bool IsKnown(const QString& path);

    QStringList paths;     ///< absolute, without duplicates
    QSet<QString> reading; ///< paths of local copies that are looked at
    QSet<QString> updates; ///< paths of documents that are replaced
};

} // namespace Norlis::Terminal
