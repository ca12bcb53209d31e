// The record of an instance, and its beginning and end.

#pragma once

#include <cstdint>
#include <memory>

#include "Common/Pattern/pattern_element.h"
#include "actor_info.h"
#include "host_interface.h"

namespace NActor {

// Lives in a block of the host's from CreateCallback to DisposeCallback, reached through
// ActorInfo::mActorDataPtr. Used on the thread of the host's call alone.
struct ParserData {
    ActorInfo* mActorInfo = nullptr;
    std::uint32_t mParseStringSize = 0;  // in bytes, without the terminator
    // The parsing string and one NUL, in a block of the host's that the record owns; null while
    // the instance has no state.
    unsigned char* mParseString = nullptr;
    std::uint8_t mEomChar = 0;   // ends a message; 0: the end of the text does
    NPattern::Pattern mPattern;  // compiled from mParseString; empty where that is no good
};

// Any operation of the host may come back in before it returns, and restore a state or dispose of
// the instance: after each the record is looked up anew, and no pointer into it is kept.
inline bool IsAlive(const ActorInfo* info)
{
    return info->mActorDataPtr != nullptr;
}

// A block of the host's with an owner on this side. The context must outlive it.
struct BlockReleaser {
    const HostContext* mContext;

    void operator()(unsigned char* block) const { mContext->mCallbacks->ReleaseBlock(block); }
};
using HostBlock = std::unique_ptr<unsigned char[], BlockReleaser>;

// Gives the parsing string back to the host, if there is one, and leaves none.
void ReleaseParseString(const HostContext* context, ParserData& ioData);

// A block for a string of size bytes and its NUL, all 0. Null, after a report, if the host has no
// memory for it.
HostBlock AllocateParseString(const HostContext* context, std::uint32_t size);

// Makes the block, which holds a string of size bytes, the parsing string of the instance, and
// leaves its pattern empty. A null block leaves it without a string. Gives whether the instance
// lives and there is a string to compile.
bool StoreParseString(ActorInfo* info, HostBlock block, std::uint32_t size);

// Compiles the stored string into mPattern. Throws what the engine throws, and leaves the pattern
// empty then.
void CompileParseString(ParserData& ioData);

// ActorInfo slots. A record that can't be had is reported, and the instance then does nothing.
void CreateCallback(HostContext* context, ActorInfo* ioActorInfo) noexcept;
void DisposeCallback(HostContext* context, ActorInfo* ioActorInfo) noexcept;

}  // namespace NActor
