// Writes parsing strings.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "values.h"

namespace NSuggest {

// Names that come from outside the messages.
struct KnownNames {
    std::vector<std::string> mGiven;     // of the first outputs; may be fewer or more
    std::vector<std::string> mHeadings;  // of the fields between separators; empty: none
    char mSeparator = '\0';              // of the headings; space: white space
    bool mHasClockDigits = false;        // dates and times are digits that are no number: 091530
};

struct WrittenPattern {
    std::string mPattern;
    std::vector<std::string> mFixedNumbers;  // in its texts: they are the same in all messages
};

// Returns a parsing string for messages that have been split into columns.
WrittenPattern WritePattern(const Column& messages, const std::vector<Column>& columns,
                            Sameness sameness, const KnownNames& known);

// Returns the pieces of a fixed text, in single quotes, with control characters as byte sets and
// other bytes that are not ASCII as wildcards. text: not empty.
std::string WriteText(std::string_view text);

// Returns two hexadecimal digits in double braces.
std::string WriteByte(unsigned char byte);

}  // namespace NSuggest
