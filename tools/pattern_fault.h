// What is wrong with a parsing string, where, and what to do about it.

#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "standin/stand_in_host.h"
#include "tools/output/palette.h"

namespace NSift {

struct PatternFault {
    std::string mMessage;  // the actor's own
    std::size_t mStart;    // offset in the parsing string, at most its size
    std::size_t mLength;   // in bytes; 0 at the end of the string
    std::vector<std::string> mHints;
    std::vector<std::string> mNeeds;  // what each class of piece would have needed there
};

// error: what the actor said of pattern, which doesn't compile.
PatternFault FindFault(const std::string& pattern, const NStandIn::Validation& error);

// Writes the message, the line of the parsing string with a caret under the place, the byte
// position from 0, the hints and the needs.
void PrintFault(std::ostream& stream, const std::string& pattern, const PatternFault& fault,
                const Palette& palette);

}  // namespace NSift
