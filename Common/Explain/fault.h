// What is wrong with a parsing string, where, and what to do about it.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Common/Pattern/pattern_error.h"

namespace NExplain {

struct Fault {
    NPattern::PatternErrorCode mCode;
    std::string mMessage;  // as the dialog shows it
    std::size_t mStart;    // offset in the parsing string, at most its size
    std::size_t mLength;   // in bytes; 0 at the end of the string
    std::vector<std::string> mHints;
    std::vector<std::string> mNeeds;  // what each form of a piece would have needed there
};

// Returns nothing if parseString compiles.
std::optional<Fault> FindFault(const std::string& parseString);

}  // namespace NExplain
