#include "delivery_buffers.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>

namespace NActor {

namespace {

// The most memory that an instance keeps for texts. A longer text costs an allocation, which is
// little beside its messages.
constexpr std::size_t kMostKept = std::size_t{64} * 1024;

// Rounded up, so that texts of about the same length need no new memory.
std::size_t CapacityFor(std::size_t size)
{
    constexpr std::size_t kLeast = 64;
    return size <= kMostKept ? std::bit_ceil(std::max(size, kLeast)) : size;
}

}  // namespace

bool TextBuffer::Assign(const char* text, std::size_t length) noexcept
{
    const std::size_t size = length + 1;
    if (size > mCapacity) {
        const std::size_t capacity = CapacityFor(size);
        mBytes.reset();
        mBytes.reset(new (std::nothrow) unsigned char[capacity]);
        mCapacity = mBytes != nullptr ? capacity : 0;
        if (mBytes == nullptr) return false;
    }
    std::memcpy(mBytes.get(), text, size);
    return true;
}

void TextBuffer::Shrink() noexcept
{
    if (mCapacity <= kMostKept) return;
    mBytes.reset();
    mCapacity = 0;
}

}  // namespace NActor
