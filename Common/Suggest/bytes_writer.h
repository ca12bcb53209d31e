// Writes parsing strings for binary messages.

#pragma once

#include <string>
#include <vector>

#include "values.h"

namespace NSuggest {

// Returns a parsing string for messages of raw bytes: if they have one length, byte by byte,
// otherwise the bytes with which all begin and the rest of them as one field.
// messages: in the order of arrival. names: of the first outputs; may be fewer or more.
std::string WriteBytesPattern(const Column& messages, const std::vector<std::string>& names);

}  // namespace NSuggest
