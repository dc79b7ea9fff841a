#include "FailureInbox.h"

#include "Later.h"

namespace Norlis::Host {

using Social::OAuth2::Failure;

void FailureInbox::Put(const Failure& failure)
{
    failures.append(failure);
    if (!isClearingSoon) {
        isClearingSoon = true;
        Later(this, [this] {
            isClearingSoon = false;
            failures.clear();
        });
    }
}

Failure FailureInbox::Take()
{
    // The last one first: the manager cleans up after a failed upload, which may fail too, before it reports the
    // upload.
    return failures.isEmpty() ? Failure() : failures.takeLast();
}

} // namespace Norlis::Host
