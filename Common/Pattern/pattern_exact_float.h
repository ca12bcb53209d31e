// Text to double by exact arithmetic, for standard libraries whose std::from_chars has no floating
// point. About as fast as the library's for numbers of up to 15 digits, and slower beyond.

#pragma once

#include <optional>
#include <string_view>

namespace NPattern {

// Returns the double nearest to the number at the start of text, ties to even: infinity if it is
// too large, 0.0 if it is too small. Returns nothing if no number starts there. Reads what
// std::from_chars reads, without the minus sign: digits with an optional point and an optional
// exponent, "inf" or "infinity", or "nan". radix: 10 with an exponent after e, or 16 with an
// exponent of two after p.
std::optional<double> ExactFloatOf(std::string_view text, unsigned radix);

}  // namespace NPattern
