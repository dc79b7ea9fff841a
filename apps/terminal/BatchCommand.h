#pragma once

#include "SessionCommand.h"
#include "TransferBars.h"

#include <QMap>
#include <QTimer>

namespace Norlis::Terminal {

/// A command that does the same with several files or documents at once. One that fails is reported and the others go
/// on.
class BatchCommand : public SessionCommand {
    Q_OBJECT

public:
    /// \param verb what is done, as in "Uploading"
    BatchCommand(const Environment& environment, const QString& verb);

    /// Gives up what can be given up; ends when that is done.
    void Interrupt() override;

protected:
    /// Gives up one job, which then ends in Cancel. Whoever cannot do that leaves it as it is.
    virtual bool GiveUp(const QString& key);

    void OnFailed(const Host::CloudProblem& problem) override;

    /// \param key the subject by which the session speaks of the job
    void Expect(const QString& key, const QString& name);
    bool IsExpected(const QString& key) const;

    /// Ends a job well, before its result is shown.
    void Succeed(const QString& key);

    /// Ends a job that was given up.
    void Cancel(const QString& key);

    /// Reports something that was asked for and cannot be done.
    void Refuse(const QString& text);

    /// Fetches the list and then calls \p action.
    template <typename Action>
    void WithFreshList(Action action)
    {
        connect(&Session(), &Host::CloudSession::ListRefreshed, this, action);
        Session().Refresh();
    }

    /// Ends the command if nothing is left to do.
    void EndIfDone();

    void ShowProgress(const QString& key, int percent);

private:
    void Settle(const QString& key);
    void DrawBars();

    QMap<QString, QString> jobs; ///< names by key
    TransferBars bars;
    QTimer redraw; ///< bars are drawn some times a second, however often progress is told
    bool areBarsShown = false;
    bool hasFailures = false;
    bool isInterrupted = false;
};

} // namespace Norlis::Terminal
