// The record of an instance.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "Common/Pattern/pattern.h"
#include "actor_info.h"
#include "delivery_buffers.h"

namespace NActor {

class RecordWatch;

// Lives in a block of the host from CreateCallback to DisposeCallback, reached through
// ActorInfo::mActorDataPtr. Used only on the thread of the host's call.
struct ParserData {
    ActorInfo* mActorInfo = nullptr;
    std::uint32_t mParseStringSize = 0;  // in bytes, without the terminator
    // The parsing string and one NUL, in a block of the host that the record owns; null while the
    // instance has no state.
    unsigned char* mParseString = nullptr;
    std::uint8_t mEomChar = 0;        // ends a message; 0: the end of the text does
    NPattern::Pattern mPattern;       // compiled from mParseString; empty if that doesn't compile
    std::uint32_t mRebuilds = 0;      // number of RebuildOutputs calls; a change ends OutputsStand
    bool mRebuilding = false;         // true during a pass of RebuildOutputs
    RecordWatch* mWatches = nullptr;  // head of the stack of live watches
    // Of the last delivery; null before the first one and while one has them.
    std::unique_ptr<DeliveryBuffers> mBuffers;
};
static_assert(alignof(ParserData) <= alignof(std::max_align_t),
              "as a block of the host is aligned");

}  // namespace NActor
