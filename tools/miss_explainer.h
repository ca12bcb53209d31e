// Why a message didn't match, in plain words.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "match_tracer.h"

namespace NSift {

struct MissWords {
    std::string mVerdict;             // which piece refused the message, and where
    std::string mWanted;              // what that piece wanted
    std::string mFound;               // what it found instead
    std::vector<std::string> mHints;  // for the usual slips
};

// trace: of a message that didn't match.
MissWords ExplainMiss(const Pieces& pieces, std::string_view message, const Trace& trace);

}  // namespace NSift
