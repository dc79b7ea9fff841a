#pragma once

#include <NorlisTestKit/Journal.h>

#include <memory>

namespace Norlis::PDF {
class AbstractFileManager;
namespace Cloud {
class AbstractCloudManager;
}
} // namespace Norlis::PDF

namespace Norlis::TestKit {

/// Writes every signal of a manager to a journal, as "UploadingCanceled(/a.pdf)". A record is shown by its id, a
/// preview size by its number. FileAdded, FileRemoved and FileUpdated have two overloads each: their parameters tell
/// which one it was, and an id is shown in quotes.
///
/// Lasts as long as the manager; the journal is kept alive for that.
void WriteSignals(PDF::Cloud::AbstractCloudManager& manager, const std::shared_ptr<Journal>& journal);
void WriteSignals(PDF::AbstractFileManager& manager, const std::shared_ptr<Journal>& journal);

} // namespace Norlis::TestKit
