// How work notices that its instance ended, or that its outputs changed, while the host was called.

#pragma once

#include <cstdint>
#include <utility>

#include "parser_data.h"

namespace NActor {

// Remembers the record and the outputs of an instance as some work finds them. Any operation of
// the host may call back into the actor, set another state or dispose of the instance: work that
// goes on after one asks its watch whether there is still something to go on with. Watches live on
// the stack, and end in the reverse order of their beginning.
class RecordWatch {
  public:
    // record: may be null.
    explicit RecordWatch(ParserData* record)
        : mRecord(record),
          mRebuilds(record != nullptr ? record->mRebuilds : 0),
          mOuter(record != nullptr ? std::exchange(record->mWatches, this) : nullptr)
    {
    }
    RecordWatch(const RecordWatch&) = delete;
    RecordWatch& operator=(const RecordWatch&) = delete;
    ~RecordWatch()
    {
        if (mRecord != nullptr) mRecord->mWatches = mOuter;
    }

    // Must be called when a record ends; no watch returns it afterwards. Comparing addresses would
    // not do, since a new record may lie where the old one lay.
    static void EndAll(const ParserData& record)
    {
        for (RecordWatch* w = record.mWatches; w != nullptr; w = w->mOuter) w->mRecord = nullptr;
    }

    // Null if the record has ended, or there was none.
    ParserData* Record() const { return mRecord; }
    // Returns true if the record exists and no rebuild of its outputs was asked for since.
    bool OutputsStand() const { return mRecord != nullptr && mRecord->mRebuilds == mRebuilds; }

  private:
    ParserData* mRecord;
    std::uint32_t mRebuilds;
    RecordWatch* mOuter;
};

}  // namespace NActor
