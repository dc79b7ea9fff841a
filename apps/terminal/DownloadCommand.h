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

private:
    void Begin();
    void OnDownloaded(const QString& id, const QString& path);
};

} // namespace Norlis::Terminal
