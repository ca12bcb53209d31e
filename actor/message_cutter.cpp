#include "message_cutter.h"

#include <algorithm>
#include <cstring>

namespace NActor {

std::optional<std::span<const unsigned char>> MessageCutter::Next()
{
    const auto left = static_cast<std::size_t>(mEnd - mNext);
    const std::size_t most = std::min<std::size_t>(left, kMessageLimit + 1);
    const void* const eom = std::memchr(mNext, mEomChar, most);
    if (eom == nullptr && most <= kMessageLimit) return std::nullopt;

    const unsigned char* const end =
        eom != nullptr ? static_cast<const unsigned char*>(eom) : mNext + kMessageLimit;
    const std::span<const unsigned char> message(mNext, end);
    mNext = end + 1;
    return message;
}

}  // namespace NActor
