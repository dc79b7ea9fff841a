#pragma once

#include "SessionCommand.h"

#include <QMap>
#include <QTimer>

namespace Norlis::Terminal {

/// Shows changes until it is interrupted. A look that fails is reported, and the next one comes.
class WatchCommand : public SessionCommand {
    Q_OBJECT

public:
    explicit WatchCommand(const Environment& environment);

protected:
    /// The records are locked while a session is open: the watch has its own, so that it keeps nobody from working.
    QString DataFolder() const override;

    void Work() override;
    void OnFailed(const Host::CloudProblem& problem) override;

private:
    void Show(const QStringList& added, const QStringList& changed, const QStringList& removed);
    void ShowChange(const QString& what, const QString& id);
    void WaitForNextLook();

    QTimer nextLook;
    QMap<QString, QString> names; ///< by id; what is removed is not in the list any more
};

} // namespace Norlis::Terminal
