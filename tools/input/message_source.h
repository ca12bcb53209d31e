// Where messages come from: files, pipes and devices.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "tools/input/block_reader.h"

namespace NSift {

enum class InputForm { kRaw, kHexLines };

// One message, valid only during the call that it is passed to.
struct InputMessage {
    std::string_view mDelivery;  // what the host delivers: the message and the byte that ends it
    std::string_view mText;      // what the parsing string is matched against
    bool mIsLost;                // a NUL ends the host's text before the end of the message
    bool mIsCut;                 // a NUL ends the message, and what follows it is lost
    std::size_t mLine;           // of the file, from 1; other bytes than a line feed may end lines
};

// Reads files and passes on each message as soon as it is complete: at the end-of-message
// character, at the greatest length of a message, and at the end of the file; with the character
// NUL also when a serial device pauses. A message is incomplete, and isn't passed on, if the device
// goes or the run ends before its end. In hexadecimal input each line that isn't blank is a
// message. Needs the same memory for a file of any size.
class MessageSource {
  public:
    struct Listeners {
        std::function<void(const InputMessage&)> mDeliver;  // called with each message
        // Called with an error message for each file and each line that can't be read.
        std::function<void(const std::string&)> mComplain;
        // Called, once for each kind, with a warning of input that is most likely wrong.
        std::function<void(const std::string&)> mWarn;
        // Called after each block of messages. isLive: whoever sends the rest may be waiting for
        // the answers to the messages so far. Returns false to end the run.
        std::function<bool(bool isLive)> mGoesOn;
    };

    // eomChar: the end-of-message character; must be 0 for hexadecimal input, where the end of the
    // host's text ends the message. listeners: none may be empty.
    MessageSource(std::uint8_t eomChar, InputForm form, const ReadOptions& reading,
                  Listeners listeners);

    // Reads a file to its end. path: "-" is standard input.
    Ending ReadFile(const std::string& path);

    // Returns true if bytes came, even if they are no complete message.
    bool HasRead() const { return mReader.BytesRead() != 0; }

  private:
    enum Warning { kNulLost, kTooLong, kOnlyCarriageReturns, kOnlyLineFeeds };

    // line: with or without its line feed.
    void TakeHexLine(std::string_view line);
    void Deliver(std::string_view delivery);
    // many: as many of the other character are no accident.
    void LookForOtherEnd(std::string_view block, std::ptrdiff_t many);
    void Warn(Warning warning);

    const std::uint8_t mEomChar;
    const InputForm mForm;
    const Listeners mListeners;
    BlockReader mReader;
    std::string mPath;              // of the file that is read
    std::size_t mLine = 1;          // in that file
    std::string mBytes;             // of a hexadecimal line
    bool mMayHaveNul = false;       // false: no message since the start contains a NUL
    bool mSeeksEnd;                 // whether another character than mEomChar may end the messages
    std::ptrdiff_t mOtherEnds = 0;  // occurrences of that character
    std::array<bool, 4> mIsWarned = {};  // by Warning
};

}  // namespace NSift
