// How a text is cut into messages.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace NActor {

// The most characters in a message. A longer one is cut there, and the character after the cut is
// lost.
inline constexpr std::uint32_t kMessageLimit = 2048;

// Cuts a text into messages at an end-of-message character. What is left at the end without that
// character is dropped.
class MessageCutter {
  public:
    // text: length bytes and a NUL, which must outlive the cutter. eomChar: 0 means that the end
    // of the text ends a message, and nothing else but the limit.
    MessageCutter(const unsigned char* text, std::size_t length, unsigned char eomChar)
        : mNext(text), mEnd(text + length + (eomChar == 0 ? 1 : 0)), mEomChar(eomChar)
    {
    }

    // The next message, inside the text and without its end-of-message character, or nothing if
    // no further one is complete. It may be empty.
    std::optional<std::span<const unsigned char>> Next();

  private:
    const unsigned char* mNext;
    const unsigned char* mEnd;  // past the NUL if that ends a message
    unsigned char mEomChar;
};

}  // namespace NActor
