#include "icon.h"

namespace NActor {

namespace {

constexpr std::uint16_t kIconPart = 1;

// The only state that instances share; the host calls all of them on one thread.
alignas(16) IconRecord sIcon;

}  // namespace

const IconRecord& LoadedIcon(const Host& host, void* iconHost) noexcept
{
    if (sIcon.mLoaded == 0) {
        host.RunGuarded(__LINE__, [&] { host.Operations().LoadIconRecord(iconHost, 0, &sIcon); });
    }
    return sIcon;
}

void DrawIcon(const Host& host, void* iconHost, std::uint16_t part, HostWord place,
              std::uint8_t state)
{
    if (part != kIconPart || sIcon.mLoaded == 0) return;
    host.Operations().DrawIconRecord(iconHost, state, place, &sIcon);
}

}  // namespace NActor
