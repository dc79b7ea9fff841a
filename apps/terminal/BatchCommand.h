#pragma once

#include "Conflicts.h"
#include "SessionCommand.h"
#include "TransferBars.h"

#include <QElapsedTimer>
#include <QMap>
#include <QSet>
#include <QTimer>

namespace Norlis::Terminal {

/// A command that does the same to several files or documents at once. A failure is reported, and the others carry on.
class BatchCommand : public SessionCommand {
    Q_OBJECT

public:
    /// \param verb what is done, as in "Uploading"
    BatchCommand(const Environment& environment, const QString& verb);

    /// Cancels the jobs that can be cancelled; ends when that is done.
    void Interrupt() override;

protected:
    /// Starts to cancel one job, which then ends in OnCanceled. Returns false if it cannot be cancelled.
    virtual bool CancelJob(const QString& key);

    void OnFailed(const Host::CloudProblem& problem) override;

    /// Adds a job.
    /// \param key  the subject by which the session refers to it
    /// \param size of what is transferred, in bytes
    void Expect(const QString& key, const QString& name, qint64 size = 0);
    bool IsExpected(const QString& key) const;

    /// Ends a job successfully. To be called before its result is shown.
    void Succeed(const QString& key);

    /// Ends a job with an error.
    void Fail(const QString& key, const QString& text);

    /// Ends a job that was cancelled.
    void OnCanceled(const QString& key);

    /// Reports a failure that belongs to no job.
    void ReportFailure(const QString& text);

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

    /// Decides about a conflict of a job; see Conflicts. Nothing happens when the job has been cancelled meanwhile.
    void Decide(const QString& key, const QString& question, OnConflict usual, const Conflicts::Decision& decided);

    /// Cancels the job if it waits for a decision.
    bool CancelDecision(const QString& key);

    Conflicts conflicts;

private:
    void Settle(const QString& key);
    void DrawBars();

    QMap<QString, QString> jobs; ///< names by key
    TransferBars bars;
    QElapsedTimer clock;
    QSet<QString> undecided; ///< keys
    QTimer redraw;           ///< limits how often the bars are drawn, however often progress is reported
    bool areBarsShown = false;
    bool hasFailures = false;
    bool isInterrupted = false;
};

} // namespace Norlis::Terminal
