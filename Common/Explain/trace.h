// Follows a message through the pieces of a parsing string, as the plug-in matches it.

#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "piece.h"

namespace NExplain {

// A range of bytes of a message.
struct Span {
    std::size_t mStart;
    std::size_t mEnd;  // not included

    std::string_view Of(std::string_view message) const
    {
        return message.substr(mStart, mEnd - mStart);
    }
};

// The bytes that one piece took.
struct Take {
    std::optional<std::size_t> mPiece;  // position in Pieces; none: white space that was skipped
    Span mSpan;
};

struct Trace {
    std::vector<Take> mTakes;  // in order; none of them empty
    // The piece that did not match, or before which the message was used up; none if all matched.
    std::optional<std::size_t> mRefusedBy;
    std::size_t mStoppedAt = 0;  // the first byte that was not taken
};

// Matches message, of at most 2^32 - 1 bytes, with the elements of pieces, of which there is at
// least one. Overwrites the values that the elements captured before.
Trace TraceMatch(const Pieces& pieces, std::string_view message);

}  // namespace NExplain
