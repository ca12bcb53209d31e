// The record of an instance, and its beginning and end.

#pragma once

#include <cstdint>

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

// Gives the parsing string back to the host, if there is one, and leaves none.
void ReleaseParseString(const HostContext* context, ParserData& ioData);

// Makes room for a string of size bytes, all 0 for now, in place of none. False, with no string
// stored, if the host has no memory for it; that is reported.
bool AllocateParseString(const HostContext* context, ParserData& ioData, std::uint32_t size);

// Compiles the stored string into mPattern. Throws what the engine throws, and leaves the pattern
// empty then.
void CompileParseString(ParserData& ioData);

// ActorInfo slots. A record that can't be had is reported, and the instance then does nothing.
void CreateCallback(HostContext* context, ActorInfo* ioActorInfo) noexcept;
void DisposeCallback(HostContext* context, ActorInfo* ioActorInfo) noexcept;

}  // namespace NActor
