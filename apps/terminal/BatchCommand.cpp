#include "BatchCommand.h"

#include "ExitStatus.h"
#include "ProblemText.h"

namespace Norlis::Terminal {

namespace {

constexpr int redrawInterval = 80; // milliseconds

} // namespace

BatchCommand::BatchCommand(const Environment& environment, const QString& verb)
    : SessionCommand(environment),
      conflicts(environment.arguments, environment.output),
      bars(verb)
{
    clock.start();
    redraw.setSingleShot(true);
    connect(&redraw, &QTimer::timeout, this, &BatchCommand::DrawBars);
}

void BatchCommand::Interrupt()
{
    isInterrupted = true;
    bool isAnyCanceled = false;
    const auto keys = jobs.keys();
    for (const QString& key : keys) {
        isAnyCanceled |= CancelJob(key);
    }
    if (!isAnyCanceled) {
        Finish(ExitStatus::interrupted);
    }
}

bool BatchCommand::CancelJob(const QString&)
{
    return false;
}

void BatchCommand::OnFailed(const Host::CloudProblem& problem)
{
    if (IsExpected(problem.subject)) {
        Fail(problem.subject, ProblemText(problem, jobs.value(problem.subject)));
    } else if (problem.request == Host::CloudProblem::Request::List) {
        SessionCommand::OnFailed(problem); // the jobs have not started yet
    }
}

void BatchCommand::Expect(const QString& key, const QString& name, qint64 size)
{
    jobs.insert(key, name);
    bars.Add(key, name, size);
    redraw.start(redrawInterval);
}

bool BatchCommand::IsExpected(const QString& key) const
{
    return jobs.contains(key);
}

void BatchCommand::Succeed(const QString& key)
{
    Settle(key);
}

void BatchCommand::Fail(const QString& key, const QString& text)
{
    hasFailures = true;
    Settle(key);
    output.Error(text);
}

void BatchCommand::OnCanceled(const QString& key)
{
    if (IsExpected(key)) {
        Fail(key, QStringLiteral("\"%1\" was cancelled").arg(jobs.value(key)));
    }
}

void BatchCommand::ReportFailure(const QString& text)
{
    hasFailures = true;
    output.Error(text);
}

void BatchCommand::EndIfDone()
{
    if (jobs.isEmpty()) {
        Finish(isInterrupted ? ExitStatus::interrupted : hasFailures ? ExitStatus::failure : ExitStatus::success);
    }
}

void BatchCommand::ShowProgress(const QString& key, int percent)
{
    bars.SetProgress(key, percent, clock.elapsed());
    if (!redraw.isActive()) {
        redraw.start(redrawInterval);
    }
}

void BatchCommand::Decide(const QString& key, const QString& question, OnConflict usual,
                          const Conflicts::Decision& decided)
{
    undecided.insert(key);
    conflicts.Decide(question, usual, [this, key, decided](OnConflict choice) {
        if (undecided.remove(key)) {
            decided(choice);
        }
    });
}

bool BatchCommand::CancelDecision(const QString& key)
{
    const bool wasUndecided = undecided.remove(key);
    if (wasUndecided) {
        OnCanceled(key);
    }
    return wasUndecided;
}

void BatchCommand::Settle(const QString& key)
{
    jobs.remove(key);
    bars.Remove(key);
    if (areBarsShown) {
        DrawBars();
    }
    EndIfDone();
}

void BatchCommand::DrawBars()
{
    if (!IsFinishing() && !conflicts.IsAsking()) {
        areBarsShown = true;
        output.SetStatus(bars.Lines(output.Columns(), output.Rows(), clock.elapsed()));
    }
}

} // namespace Norlis::Terminal
