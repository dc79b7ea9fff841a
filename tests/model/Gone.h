#pragma once

namespace Norlis::Test {

/// Thrown from inside an operation of a model when the model was deleted meanwhile: whatever was still to come does
/// not.
struct Gone {};

} // namespace Norlis::Test
