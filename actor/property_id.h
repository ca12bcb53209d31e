// The ids of the dynamic outputs.

#pragma once

#include <cstdint>

#include "host_call.h"

namespace NActor {

// A property id: the first two characters of inRateBase, then two that stand for inIndex, 0 to
// 1351; the first character is the most significant byte. Reports a base that is too short, and an
// index out of range. The id has no index characters for an index below 0 or from 1452 on.
std::uint32_t MakeTwoCharId(const Host& host, const char* inRateBase, std::int32_t inIndex);

}  // namespace NActor
