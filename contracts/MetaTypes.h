#pragma once

namespace Norlis::PDF {

/// Registers every type that the managers' signals carry, under the names that the signals use, so that queued
/// connections and QSignalSpy work on all of them. Called by both abstract managers.
void RegisterMetaTypes();

} // namespace Norlis::PDF
