// The outputs after the fixed one: one for each capture of the parsing string, in its order.

#pragma once

#include <cstddef>
#include <cstdint>

#include "host_call.h"
#include "parser_data.h"

namespace NActor {

// Output 1, msg_rcv, which every instance has and which is never redefined.
inline constexpr std::int32_t kFixedOutputPropertyCount = 1;

// The number of the output for the capture at position k, counted from 0: k + 2.
// k: below the result of ReachableOutputs.
constexpr std::uint16_t OutputNumber(std::size_t k)
{
    return static_cast<std::uint16_t>(k + kFixedOutputPropertyCount + 1);
}

// The number of captures that have an output: those past the last number that the host can express
// have none.
constexpr std::size_t ReachableOutputs(std::size_t captures)
{
    constexpr std::size_t kMost = kLargestPropertyNumber - kFixedOutputPropertyCount;
    return captures < kMost ? captures : kMost;
}

// Asks the host for the number of outputs. Reports an error, or a count without the fixed output;
// the count is returned all the same, which may be any number, and 0 if the host wrote none.
std::int32_t CountOutputs(const HostCall& call);

// Makes the outputs match the captures of the record's pattern, in this order: removes surplus
// ones from the last one down, redefines those that stay, adds missing ones. To be called right
// after a compile. Failures are reported, and the work goes on.
//
// The host may call back in: a rebuild from inside another one only makes that one start over, with
// the pattern that the record then has. Returns true if the outputs match; false from inside
// another rebuild, and if the record has ended. Throws std::bad_alloc and what the host throws; the
// pattern is then empty.
bool RebuildOutputs(const HostCall& call, ParserData& ioRecord);

}  // namespace NActor
