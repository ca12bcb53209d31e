// The memory of a delivery, which the record of an instance keeps from one delivery to the next.

#pragma once

#include <cstddef>
#include <memory>

#include "Common/Pattern/pattern.h"

namespace NActor {

// A copy of the delivered text.
class TextBuffer {
  public:
    // Copies length bytes and a NUL. Returns false if there is no memory for them.
    bool Assign(const char* text, std::size_t length) noexcept;

    const unsigned char* Bytes() const { return mBytes.get(); }

    // Frees the memory of a long text, so that no instance keeps much of it.
    void Shrink() noexcept;

  private:
    std::unique_ptr<unsigned char[]> mBytes;
    std::size_t mCapacity = 0;
};

struct DeliveryBuffers {
    TextBuffer mText;
    NPattern::CapturedParameters mCaptured;
};

}  // namespace NActor
