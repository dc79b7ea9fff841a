#pragma once

#include "Account.h"
#include "Arguments.h"
#include "Output.h"

#include <QObject>

#include <memory>

namespace Norlis::Terminal {

/// What the commands need to run.
struct Environment {
    const Arguments& arguments;
    Output& output;
    std::shared_ptr<Host::CloudAccountSettings> settings;
    int interruptDescriptor; ///< see Interrupts
};

/// One run of one command.
class Command : public QObject {
    Q_OBJECT

public:
    explicit Command(const Environment& environment);

    /// Begins; ends in Finished, which may be emitted before this returns.
    virtual void Start() = 0;

    /// Asks the command to stop; it ends soon after.
    virtual void Interrupt();

signals:
    void Finished(int exitStatus);

protected:
    const Arguments& arguments;
    Output& output;
    Account account;
    const int interruptDescriptor;
};

} // namespace Norlis::Terminal
