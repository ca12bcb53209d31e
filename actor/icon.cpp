#include "icon.h"

namespace NActor {

namespace {

constexpr std::uint16_t kIconPart = 1;

// The one thing that instances share; the host calls them all on one thread. It lasts as long as
// the library, and is zero until the host fills it.
alignas(16) IconRecord sIcon;

}  // namespace

std::uint8_t IconSizeCallback(HostContext* context, void* host, std::uint16_t* outFirst,
                              std::uint16_t* outSecond, std::uint16_t* outThird,
                              std::uint16_t* outFourth) noexcept
{
    if (sIcon.mLoaded == 0) context->mCallbacks->LoadIconRecord(host, 0, &sIcon);
    *outFirst = sIcon.mFirstExtent;
    *outSecond = sIcon.mSecondExtent;
    *outThird = 0;
    *outFourth = 0;
    return 1;
}

void DrawIconCallback(HostContext* context, void* host, HostWord /*unread1*/, std::uint16_t part,
                      HostWord /*unread2*/, HostWord place, HostWord /*unread3*/,
                      std::uint8_t state) noexcept
{
    if (part != kIconPart || sIcon.mLoaded == 0) return;
    context->mCallbacks->DrawIconRecord(host, state, place, &sIcon);
}

}  // namespace NActor
