// Texts written into buffers of the host.

#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace NActor {

// Copies text up to its first NUL into size bytes at outBuffer, cut so that at least one NUL
// follows, and fills the rest with NUL. If size is 0, outBuffer isn't touched and may be null.
inline void CopyText(std::string_view text, char* outBuffer, std::uint32_t size)
{
    if (size == 0) return;
    text = text.substr(0, std::min<std::size_t>(text.find('\0'), size - 1));
    std::fill(std::copy(text.begin(), text.end(), outBuffer), outBuffer + size, '\0');
}

}  // namespace NActor
