#pragma once

#include "Arguments.h"

#include <host/account/CloudAccount.h>

namespace Norlis::Terminal {

/// The account that a command line refers to: the one that it names, or else that of the last sign-in.
class Account : public Host::CloudAccount {
public:
    Account(const Arguments& arguments, const std::shared_ptr<Host::CloudAccountSettings>& settings);

    /// The command that signs in, as the user can type it.
    QString LoginCommandLine() const;

    /// The message for when nobody is signed in.
    QString SignedOutText() const;
};

} // namespace Norlis::Terminal
