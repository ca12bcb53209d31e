// The end-of-message character of a text, and its messages.

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace NSuggest {

// Returns the byte that most likely ends each message, as a survey of the bytes finds it, or the
// end of the only line of a text. Returns nothing if no byte does. bytes: the beginning of what a
// device sends; longer than a few messages. pauses: the positions in bytes at which the device
// pauses, in order.
std::optional<std::uint8_t> FindEndOfMessage(std::string_view bytes,
                                             const std::vector<std::size_t>& pauses = {});

// Returns true if most of the bytes are text.
bool IsText(std::string_view bytes);

// Returns the messages of a text as the host cuts it: at the end-of-message character, and after
// 2048 bytes, of which the next one is lost. Bytes after the last character are a message too.
// eomChar: none: what is text is one message, and other bytes are none. The messages refer to text.
std::vector<std::string_view> MessagesIn(std::string_view text,
                                         std::optional<std::uint8_t> eomChar);

}  // namespace NSuggest
