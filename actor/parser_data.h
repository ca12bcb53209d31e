// The record of an instance, and its beginning and end.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include "Common/Pattern/pattern.h"
#include "actor_info.h"
#include "host_interface.h"

namespace NActor {

class RecordWatch;

// Lives in a block of the host's from CreateCallback to DisposeCallback, reached through
// ActorInfo::mActorDataPtr. Used on the thread of the host's call alone.
struct ParserData {
    ActorInfo* mActorInfo = nullptr;
    std::uint32_t mParseStringSize = 0;  // in bytes, without the terminator
    // The parsing string and one NUL, in a block of the host's that the record owns; null while
    // the instance has no state.
    unsigned char* mParseString = nullptr;
    std::uint8_t mEomChar = 0;        // ends a message; 0: the end of the text does
    NPattern::Pattern mPattern;       // compiled from mParseString; empty where that is no good
    std::uint32_t mRebuilds = 0;      // how often the outputs were to be rebuilt
    bool mRebuilding = false;         // while they are
    RecordWatch* mWatches = nullptr;  // the innermost of those that last, which knows the next
};
static_assert(alignof(ParserData) <= alignof(std::max_align_t),
              "as a block of the host's is aligned");

// Remembers the record and the outputs of an instance as some work finds them. Each operation of
// the host may come back into the actor, set another state or dispose of the instance: work that
// goes on behind one asks here whether there is still something to go on with.
class RecordWatch {
  public:
    explicit RecordWatch(const ActorInfo* info)
        : mRecord(info->mActorDataPtr),
          mRebuilds(mRecord != nullptr ? mRecord->mRebuilds : 0),
          mOuter(mRecord != nullptr ? std::exchange(mRecord->mWatches, this) : nullptr)
    {
    }
    RecordWatch(const RecordWatch&) = delete;
    RecordWatch& operator=(const RecordWatch&) = delete;
    ~RecordWatch()
    {
        if (mRecord != nullptr) mRecord->mWatches = mOuter;
    }

    // To be called when a record ends: no watch finds it any more. To compare addresses would not
    // do, since a new record may lie where the old one lay.
    static void EndAll(const ParserData& data)
    {
        for (RecordWatch* w = data.mWatches; w != nullptr; w = w->mOuter) w->mRecord = nullptr;
    }

    // Null if the record has ended, or there was none.
    ParserData* Record() const { return mRecord; }
    // Whether the record is there and nothing wanted its outputs rebuilt.
    bool OutputsStand() const { return Record() != nullptr && mRecord->mRebuilds == mRebuilds; }

  private:
    ParserData* mRecord;
    std::uint32_t mRebuilds;
    RecordWatch* mOuter;
};

// A block of the host's with a parsing string, given back unless a record takes it.
struct BlockReleaser {
    const HostContext* mContext;
    void operator()(unsigned char* block) const { mContext->mCallbacks->ReleaseBlock(block); }
};
using StringBlock = std::unique_ptr<unsigned char[], BlockReleaser>;

// Room for a string of size bytes and its NUL, all 0. Null, after a report, if the host has no
// memory for it.
StringBlock AllocateParseString(const HostContext* context, std::uint32_t size);

// Stores the string of size bytes in block, and gives the one before back to the host if there is
// one. A null block, of size 0, leaves none.
void StoreParseString(const HostContext* context, ParserData& ioData, StringBlock block,
                      std::uint32_t size);

// Compiles the stored string into mPattern. Throws what the engine throws, and leaves the pattern
// empty then.
void CompileParseString(ParserData& ioData);

// ActorInfo slots. A record that can't be had is reported, and the instance then does nothing.
void CreateCallback(HostContext* context, ActorInfo* ioActorInfo) noexcept;
void DisposeCallback(HostContext* context, ActorInfo* ioActorInfo) noexcept;

}  // namespace NActor
