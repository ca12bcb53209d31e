// Values of outputs as text.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "standin/stand_in_host.h"

namespace NSift {

// Appends a string as NExplain::Quoted returns it, a number with the fewest digits that read back
// as the same number.
void AppendText(const NStandIn::Value& value, std::string& ioText);

// Appends an integer in decimal digits.
void AppendInteger(std::int64_t value, std::string& ioText);

// Appends a float that has few digits: one that a decimal with at most 5 digits before the point
// and 3 after it reads back as. Appends the fewest digits after the point, but at least
// fewestDecimals (0 to 3). Appends nothing and returns false for any other float.
bool AppendShortFloat(double value, int fewestDecimals, std::string& ioText);

// Appends text between double quotes, as it is.
void AppendInQuotes(std::string_view text, std::string& ioText);

// Returns true if text consists of printable ASCII characters without quotes and backslashes, so
// that no format has to escape any.
bool IsPlain(std::string_view text);

}  // namespace NSift
