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
    /// The watch has a list of its own: what another command has listed meanwhile is news to it all the same.
    QString DataFolder() const override;

    void Work() override;
    void OnFailed(const Host::CloudProblem& problem) override;

private:
    void Show(const QStringList& added, const QStringList& changed, const QStringList& removed);
    void ShowChange(const QString& what, const QString& id);

    QMap<QString, QString> names; ///< by id; a removed document is no longer in the list
};

} // namespace Norlis::Terminal
