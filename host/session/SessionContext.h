#pragma once

#include "CloudSession.h"
#include "DocumentIndex.h"
#include "SessionCloud.h"

#include <base/ChangeJournal.h>

namespace Norlis::Host {

/// How often a transfer is begun again that breaks off while the service answers all else: it may be the transfer that
/// is too much for it.
constexpr int mostBreaks = 3;

/// What the parts of a session work with. All of it is the session's and outlives the parts, which know nothing of each
/// other.
///
/// Whoever calls something that emits must expect all of it to be gone afterwards, because a slot may delete the
/// session.
struct SessionContext {
    CloudSession& session; ///< emits how requests end
    SessionCloud& cloud;
    DocumentIndex& documents;
    const PictureFolder& pictures;
    ChangeJournal& journal;
    Md5HashCalculator& hashes;
    LocalFileSystem& fileSystem;
};

} // namespace Norlis::Host
