#pragma once

#include "BatchCommand.h"

namespace Norlis::Terminal {

/// Downloads documents to a folder.
class DownloadCommand : public BatchCommand {
    Q_OBJECT

public:
    explicit DownloadCommand(const Environment& environment);

protected:
    void Work() override;
    bool CancelJob(const QString& id) override;
    void OnFailed(const Host::CloudProblem& problem) override;

private:
    void Begin();
    void DecideAbout(const Host::CloudProblem& problem, OnConflict choice);
    void OnDownloaded(const QString& id, const QString& path);

    QSet<QString> decided; ///< ids of documents that are tried a second time
};

} // namespace Norlis::Terminal
