// Where messages come from: files, pipes and devices.

#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <string_view>

#include "tools/input/progress.h"

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
// each line that isn't blank is a message.
class MessageSource {
  public:
    // eomChar: the end-of-message character; must be 0 for hexadecimal input, where the end of the
    // host's text ends the message. deliver: called with each message. complain: called with an
    // error message for each line that can't be read.
    MessageSource(std::uint8_t eomChar, InputForm form,
                  std::function<void(const InputMessage&)> deliver,
                  std::function<void(const std::string&)> complain);

    // Reads a file to its end. path: "-" is standard input. Throws std::system_error if it can't be
    // opened or read.
    void ReadFile(const std::string& path);

    // Returns true if the current file isn't a regular file, so that a sender may wait for answers.
    bool IsLive() const { return mIsLive; }

    // Returns true if all or part of any message was lost because of a NUL byte, at which the
    // host's text ends.
    bool HasLostText() const { return mHasLostText; }

  private:
    void ReadRaw(std::FILE* file, Progress& progress);
    void ReadHexLines(std::FILE* file, const std::string& path, Progress& progress);
    void TakeHexLine(const std::string& line, const std::string& place);
    void Add(int byte);
    void EndMessage();
    void Deliver();

    std::uint8_t mEomChar;
    InputForm mForm;
    std::function<void(const InputMessage&)> mDeliver;
    std::function<void(const std::string&)> mComplain;
    std::string mBuffer;  // the next delivery, as far as it has been read
    bool mIsLive = false;
    bool mHasLostText = false;
};

}  // namespace NSift
