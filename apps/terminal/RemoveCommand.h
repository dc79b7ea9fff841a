#pragma once

#include "BatchCommand.h"

namespace Norlis::Terminal {

/// Deletes documents from the cloud.
class RemoveCommand : public BatchCommand {
    Q_OBJECT

public:
    explicit RemoveCommand(const Environment& environment);

protected:
    void Work() override;

private:
    void Begin();
    void OnRemoved(const QString& id);

    QMap<QString, QString> names; ///< by id; a removed document is no longer in the list
};

} // namespace Norlis::Terminal
