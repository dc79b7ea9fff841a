#pragma once

#include "SessionCommand.h"

#include <QMap>

namespace Norlis::Terminal {

/// Shows changes in the cloud until it is interrupted. A list that fails is reported, and the next one follows.
class WatchCommand : public SessionCommand {
    Q_OBJECT

public:
    explicit WatchCommand(const Environment& environment);

protected:
    /// The records are locked while a session is open: the watch has its own, so that other commands can run.
    QString DataFolder() const override;

    void Work() override;
    void OnFailed(const Host::CloudProblem& problem) override;

private:
    void Show(const QStringList& added, const QStringList& changed, const QStringList& removed);
    void ShowChange(const QString& what, const QString& id);

    QMap<QString, QString> names; ///< by id; a removed document is no longer in the list
};

} // namespace Norlis::Terminal
