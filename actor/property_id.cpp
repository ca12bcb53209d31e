#include "property_id.h"

#include <algorithm>
#include <iterator>

namespace NActor {

namespace {

constexpr std::int32_t kTwoCharMax = 26 * 26;

// A range of indexes and its two characters: digits to the base of mBase, counted from mFirst.
struct IndexRange {
    std::int32_t mStart;
    std::int32_t mEnd;  // not included
    char mFirst;
    std::int32_t mBase;
};

constexpr std::int32_t kLetterStart = 100;
constexpr IndexRange kIndexRanges[] = {
    {0, kLetterStart, '0', 10},
    {kLetterStart, kLetterStart + kTwoCharMax, 'A', 26},
    {kLetterStart + kTwoCharMax, kLetterStart + 2 * kTwoCharMax, 'a', 26},
};

}  // namespace

std::uint32_t MakeTwoCharId(const Host& host, const char* inRateBase, std::int32_t inIndex)
{
    host.Check(inRateBase[0] != 0 && inRateBase[1] != 0, "inRateBase[0] != 0 && inRateBase[1] != 0",
               __LINE__);
    // Lower than the end of the last range: ids from there on are made, but not promised.
    host.Check(inIndex >= 0 && inIndex < kTwoCharMax * 2,
               "inIndex >= 0 && inIndex < kTwoCharMax * 2", __LINE__);

    const auto byteOf = [](std::int32_t c) { return static_cast<std::uint32_t>(c) & 0xFF; };
    std::uint32_t id = byteOf(inRateBase[0]) << 24;
    // An empty base has no second character to read.
    if (inRateBase[0] != 0) id |= byteOf(inRateBase[1]) << 16;

    const auto* const range = std::find_if(
        std::begin(kIndexRanges), std::end(kIndexRanges),
        [inIndex](const auto& row) { return inIndex >= row.mStart && inIndex < row.mEnd; });
    if (!host.Check(range != std::end(kIndexRanges), "false", __LINE__)) return id;

    const std::int32_t indexOffset = inIndex - range->mStart;
    host.Check(indexOffset >= 0 && indexOffset < kTwoCharMax,
               "indexOffset >= 0 && indexOffset < kTwoCharMax", __LINE__);
    return id | byteOf(range->mFirst + indexOffset / range->mBase) << 8 |
           byteOf(range->mFirst + indexOffset % range->mBase);
}

}  // namespace NActor
