// The actor's icon: its size and its drawing, both by way of the host.

#pragma once

#include <cstddef>
#include <cstdint>

#include "actor_info.h"
#include "host_interface.h"

namespace NActor {

// Filled by the host. How large it is was never told: the tail is room for what the host keeps
// there, and nothing of it is read here.
struct IconRecord {
    std::uint8_t mLoaded;  // not 0 once the record holds an icon
    std::uint8_t mHostPart1[23];
    std::uint16_t mFirstExtent;  // the two words of the icon's size
    std::uint16_t mSecondExtent;
    std::uint8_t mHostPart28[4068];
};

static_assert(offsetof(IconRecord, mLoaded) == 0);
static_assert(offsetof(IconRecord, mFirstExtent) == 24);
static_assert(offsetof(IconRecord, mSecondExtent) == 26);

// ActorInfo slots. host: the host's own pointer, passed on as it came. All instances share one
// icon, loaded when its size is first asked for.

// Gives the two size words, and 0 in the third and the fourth. Always true.
std::uint8_t IconSizeCallback(HostContext* context, void* host, std::uint16_t* outFirst,
                              std::uint16_t* outSecond, std::uint16_t* outThird,
                              std::uint16_t* outFourth) noexcept;

// Draws part 1 of the icon if it is loaded. place, state: passed on as they came.
void DrawIconCallback(HostContext* context, void* host, HostWord unread1, std::uint16_t part,
                      HostWord unread2, HostWord place, HostWord unread3,
                      std::uint8_t state) noexcept;

}  // namespace NActor
