// Cautions about the values of a message.

#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "caution.h"
#include "trace.h"

namespace NExplain {

// A whole number of fewer digits always fits an integer.
inline constexpr std::int32_t kFewestLargeDigits = 10;
inline constexpr std::int32_t kFewestLargeHexDigits = 8;

// True if the piece captures a number from text that can be too large for it, so that the value is
// the nearest integer.
bool CanBeClamped(const Piece& piece);

// True if the piece captures an integer from more than four raw bytes, or from any number of them.
bool CanDropBytes(const Piece& piece);

// A way in which the value of a piece can be wrong in some message.
struct ValueRisk {
    CautionKind mKind;
    std::size_t mPiece;  // position in Pieces
};

// Returns false if the risk can't have come true in message, which costs much less than a trace.
// piece: of the risk.
bool MayBeTrue(const ValueRisk& risk, const Piece& piece, std::string_view message);

// Empty for a parsing string whose values can't be wrong in these ways.
std::vector<ValueRisk> FindValueRisks(const Pieces& pieces);

// Returns a caution for each of the risks that came true. trace: of message, which matched.
std::vector<Caution> FindValueCautions(const Pieces& pieces, const std::vector<ValueRisk>& risks,
                                       std::string_view message, const Trace& trace);

}  // namespace NExplain
