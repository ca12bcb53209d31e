// The outputs behind the fixed one: one for each capture of the parsing string, in its order.

#pragma once

#include <cstddef>
#include <cstdint>

#include "Common/Pattern/pattern.h"
#include "actor_info.h"
#include "host_interface.h"

namespace NActor {

// Output 1, msg_rcv, which every instance has and nobody here redefines.
inline constexpr std::int32_t kFixedOutputPropertyCount = 1;

// The number of the output for the capture at position k, from 0: k + 2. Those past the last
// number that the host can express have no output at all.
constexpr std::uint16_t OutputNumber(std::size_t k)
{
    return static_cast<std::uint16_t>(k + kFixedOutputPropertyCount + 1);
}

// How many of so many captures can have an output.
constexpr std::size_t ReachableOutputs(std::size_t captures)
{
    constexpr std::size_t kMost = kLargestPropertyNumber - kFixedOutputPropertyCount;
    return captures < kMost ? captures : kMost;
}

// Fills the value of an output from a capture. A string payload is made by the host and is the
// caller's to hand over or to release with ReleaseOutputValue.
void FillOutputValue(const HostContext* context, const NPattern::Parameter& parameter,
                     HostValue& outValue);

// Gives a string payload back to the host; of any other value nothing is kept.
void ReleaseOutputValue(const HostContext* context, HostValue& ioValue);

// Asks the host for the number of outputs. An error, or a count without the fixed output, is
// reported; what the host said is given all the same, which may be any number, and 0 if it said
// nothing.
std::int32_t CountOutputs(const HostContext* context, const ActorInfo* info);

// Brings the outputs in line with the captures of the instance's pattern, in this order: surplus
// ones go, from the last one down, those that stay are redefined in place, missing ones are added.
// To be called right after a compile. Failures are reported and passed over. The host may come back
// in: a rebuild from inside another does nothing but make that one start over, with the pattern
// that the instance has then. Gives whether the outputs are in line: false from inside another, and
// if the record is gone. Throws std::bad_alloc before an output is touched, and leaves the pattern
// empty then.
bool RebuildOutputs(const HostContext* context, const ActorInfo* info);

// A property id: the first two characters of inRateBase, then two that tell inIndex, 0 to 1351. An
// index outside is reported, and gives an id without index characters from 1452 on and below 0.
std::uint32_t MakeTwoCharId(const HostContext* context, const char* inRateBase,
                            std::int32_t inIndex);

}  // namespace NActor
