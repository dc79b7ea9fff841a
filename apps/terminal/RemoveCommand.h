#pragma once

#include "BatchCommand.h"
#include "DocumentEntry.h"

#include <QHash>

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
    bool MayRemove(const QString& id);

    QHash<QString, DocumentEntry> before; ///< by id; the list before it was fetched anew
    QMap<QString, QString> names;         ///< by id; a removed document is no longer in the list
};

} // namespace Norlis::Terminal
