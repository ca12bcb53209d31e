// The actor's icon: the host loads it, gives its size and draws it.

#pragma once

#include <cstddef>
#include <cstdint>

#include "host_call.h"
#include "host_interface.h"

namespace NActor {

// Filled by the host. Its full size is unknown: the tail is room for what the host keeps there, and
// none of it is read here.
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

// The pointer iconHost is the host's own and passed on as it came.

// The icon that all instances share. The host loads it when it is first asked for; it stays zero,
// with a size of 0, as long as the host can't load it.
const IconRecord& LoadedIcon(const Host& host, void* iconHost) noexcept;

// Draws part 1 of the icon if it is loaded; there are no other parts. place, state: passed on as
// they came. Throws what the host throws.
void DrawIcon(const Host& host, void* iconHost, std::uint16_t part, HostWord place,
              std::uint8_t state);

}  // namespace NActor
