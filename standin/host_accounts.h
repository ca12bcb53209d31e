// What the operations of the stand-in host have handed out and not got back, and what they saw.

#pragma once

#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "actor/host_interface.h"
#include "string_values.h"

namespace NStandIn {

// A failed check that the actor reported.
struct Assertion {
    std::string mText;
    std::string mDisplayName;
    std::int32_t mLine;
};

struct BlockDeleter {
    void operator()(void* block) const { std::free(block); }
};
using SpareBlock = std::unique_ptr<void, BlockDeleter>;

struct TextHandle {
    std::string mBytes;
    std::unique_ptr<unsigned char[]> mLocked;  // the bytes while they are locked
    int mLocks = 0;
};

struct HostAccounts {
    HostAccounts() = default;
    HostAccounts(const HostAccounts&) = delete;
    HostAccounts& operator=(const HostAccounts&) = delete;
    // Frees the blocks that the actor did not give back.
    ~HostAccounts()
    {
        for (const auto& [block, size] : mBlocks) std::free(block);
    }

    std::map<void*, std::uint32_t> mBlocks;                 // sizes, by address
    std::multimap<std::uint32_t, SpareBlock> mSpareBlocks;  // released blocks to reuse, by size
    std::map<NActor::HostTextHandle*, TextHandle> mTextHandles;
    StringValues mStringValues;
    NActor::IconRecord* mIcon = nullptr;  // the actor's; null before the first use

    bool mLogging = false;
    std::vector<std::string> mLog;  // one line for each operation
    std::vector<Assertion> mAssertions;
    std::vector<std::string> mViolations;  // what the actor did wrong
};

}  // namespace NStandIn
