// Follows a message through the pieces of a parsing string, as the plug-in matches it.

#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "pattern_pieces.h"

namespace NSift {

// A range of bytes of a message.
struct Span {
    std::size_t mStart;
    std::size_t mEnd;  // not included

    std::string_view Of(std::string_view message) const
    {
        return message.substr(mStart, mEnd - mStart);
    }
};

struct Step {
    std::optional<std::size_t> mPiece;  // position in Pieces; none: white space that was skipped
    Span mTook;
};

struct Trace {
    std::vector<Step> mSteps;  // those that took something, in order
    // The piece that didn't match, or that the message was used up before; none if all did.
    std::optional<std::size_t> mRefusedBy;
    std::size_t mStoppedAt = 0;  // the first byte that wasn't taken
    bool mIsCut = false;         // for whoever knows: the message went on behind a NUL
};

// Matches message with the elements of pieces, of which there is at least one.
Trace TraceMatch(const Pieces& pieces, std::string_view message);

}  // namespace NSift
