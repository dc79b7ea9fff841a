#pragma once

namespace Norlis::Social {

/// Gives up, for good, what drawing a page does not need. Afterwards the process can read what it has open or is sent
/// and the system's fonts, and write to what it has open, within limits on time and memory; it can neither open
/// another file nor a connection, nor start or touch another process. To be called with everything loaded, before the
/// first document is opened, while the process has one thread.
///
/// False when the kernel refuses a part that all the rest relies on. No document may be opened then.
[[nodiscard]] bool EnterSandbox();

} // namespace Norlis::Social
