// Why a message does not match, in plain words.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "trace.h"

namespace NExplain {

struct Miss {
    std::string mVerdict;             // which piece refused the message, and where
    std::string mWanted;              // what that piece takes
    std::string mFound;               // what was there instead
    std::vector<std::string> mHints;  // for common mistakes
};

// The verdict on a message that the plug-in never sees completely, instead of ExplainMiss.
inline constexpr char kLostVerdict[] =
    "the message is lost: it contains a byte 00, at which the host's text ends";

// trace: of a message that did not match.
// isCut: the message went on after a NUL, but the host passes text that ends there.
Miss ExplainMiss(const Pieces& pieces, std::string_view message, const Trace& trace, bool isCut);

}  // namespace NExplain
