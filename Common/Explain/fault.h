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
    std::size_t mStart;    // offset in the parsing string; its size if the place is unknown
    std::size_t mLength;   // in bytes; 0 if the place is unknown
    std::vector<std::string> mHints;
    std::vector<std::string> mNeeds;  // what each form of a piece would have needed there
};

// Returns nothing if parseString compiles. If memory runs out, may return a syntax error instead of
// throwing std::bad_alloc.
std::optional<Fault> FindFault(const std::string& parseString);

}  // namespace NExplain
