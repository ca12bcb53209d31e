// Where messages come from: files, pipes and devices.

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace NSift {

enum class InputForm { kRaw, kHexLines };

// One message, valid only during the call that it is passed to.
struct InputMessage {
    std::string_view mDelivery;  // what the host delivers: the message and the byte that ends it
    std::string_view mText;      // what the parsing string is matched against
    bool mIsLost;                // a NUL ends the host's text before the end of the message
    bool mIsCut;                 // a NUL ends the message, and what follows it is lost
};

// Reads files and passes on each message as soon as it is complete: at the end-of-message
// character, at the greatest length of a message, and at the end of the file. In hexadecimal input
// each line that isn't blank is a message. Needs the same memory for a file of any size.
class MessageSource {
  public:
    struct Listeners {
        std::function<void(const InputMessage&)> mDeliver;  // called with each message
        // Called with an error message for each line that can't be read.
        std::function<void(const std::string&)> mComplain;
        // Called before waiting for more of a file that isn't a regular one: its sender may itself
        // be waiting for the answers to the messages so far.
        std::function<void()> mBeforeWait;
    };

    // eomChar: the end-of-message character; must be 0 for hexadecimal input, where the end of the
    // host's text ends the message. listeners: none may be empty.
    MessageSource(std::uint8_t eomChar, InputForm form, Listeners listeners);

    // Reads a file to its end. path: "-" is standard input. Throws std::system_error if it can't be
    // opened or read; what could be read is passed on before.
    void ReadFile(const std::string& path);

    // Returns true if all or part of any message was lost because of a NUL byte, at which the
    // host's text ends.
    bool HasLostText() const { return mHasLostText; }

  private:
    // line: with or without its line feed.
    void TakeHexLine(std::string_view line, const std::string& path, std::size_t number);
    void Deliver(std::string_view delivery);

    std::uint8_t mEomChar;
    InputForm mForm;
    Listeners mListeners;
    std::vector<char> mBlock;  // what was read last
    std::string mBytes;        // of a hexadecimal line
    bool mMayHaveNul = false;  // false: no message since the start contains a NUL
    bool mHasLostText = false;
};

}  // namespace NSift
