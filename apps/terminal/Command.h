#pragma once

#include "Account.h"
#include "Arguments.h"
#include "Output.h"

#include <QObject>

#include <memory>

namespace Norlis::Terminal {

/// What the commands work with.
struct Environment {
    const Arguments& arguments;
    Output& output;
    std::shared_ptr<Host::CloudAccountSettings> settings;
    int interruptDescriptor; ///< see Interrupts
};

/// One thing that the program does.
class Command : public QObject {
    Q_OBJECT

public:
    explicit Command(const Environment& environment);

    /// Begins; ends in Finished, which may come from inside.
    virtual void Start() = 0;

    /// The user wants it to stop; it ends soon.
    virtual void Interrupt();

signals:
    void Finished(int exitStatus);

protected:
    const Arguments& arguments;
    Output& output;
    Account account;
    const int interruptDescriptor;
};

/// The object for the command that the arguments name.
std::unique_ptr<Command> MakeCommand(const Environment& environment);

} // namespace Norlis::Terminal
