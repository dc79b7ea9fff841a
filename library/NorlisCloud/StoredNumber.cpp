#include <NorlisCloud/StoredNumber.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace Norlis::PDF::Cloud {

namespace {

struct Number {
    bool isNegative;
    std::uint64_t magnitude; ///< at most one more than fits into 32 bits
};

Number Parse(const std::string& text, const std::string& reader)
{
    constexpr auto blanks = " \t\n\v\f\r"; // those of the C locale, whatever the program's locale is
    constexpr std::uint64_t beyond32Bits = std::uint64_t{1} << 32;

    auto next = text.begin() + static_cast<std::ptrdiff_t>(std::min(text.find_first_not_of(blanks), text.size()));
    Number number{false, 0};
    if (next != text.end() && (*next == '-' || *next == '+')) {
        number.isNegative = *next++ == '-';
    }
    const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
    if (next == text.end() || !isDigit(*next)) {
        throw std::invalid_argument("invalid " + reader + " argument");
    }
    for (; next != text.end() && isDigit(*next); ++next) {
        number.magnitude = std::min(number.magnitude * 10 + static_cast<std::uint64_t>(*next - '0'), beyond32Bits);
    }
    return number;
}

} // namespace

std::uint32_t StoredUnsigned(const std::string& text)
{
    const auto [isNegative, magnitude] = Parse(text, "stoul");
    if (magnitude > std::numeric_limits<std::uint32_t>::max()) {
        throw std::out_of_range("stoul argument out of range");
    }
    const auto value = static_cast<std::uint32_t>(magnitude);
    return isNegative ? 0 - value : value;
}

std::int32_t StoredInt(const std::string& text)
{
    const auto [isNegative, magnitude] = Parse(text, "stoi");
    const auto value = isNegative ? -static_cast<std::int64_t>(magnitude) : static_cast<std::int64_t>(magnitude);
    if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max()) {
        throw std::out_of_range("stoi argument out of range");
    }
    return static_cast<std::int32_t>(value);
}

} // namespace Norlis::PDF::Cloud
