#pragma once

#include <cstdint>
#include <string>

namespace Norlis::PDF::Cloud {

/// Decimal numbers of stored records, read with the rules of std::stoul and std::stoi on a platform whose long has 32
/// bits: blanks and a sign may lead, what follows the digits is ignored, and a negative text given to the unsigned
/// reader wraps around. The standard functions would take 64 bits and other texts on most platforms, and a record must
/// mean the same on all.
///
/// Throw std::invalid_argument with "invalid stoul argument" ("invalid stoi argument") for a text that is no number,
/// and std::out_of_range with "stoul argument out of range" ("stoi argument out of range") for one beyond 32 bits.
std::uint32_t StoredUnsigned(const std::string& text);
std::int32_t StoredInt(const std::string& text);

} // namespace Norlis::PDF::Cloud
