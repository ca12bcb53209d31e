// Where messages come from: files, pipes and devices, read as they deliver.

#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <string_view>

#include "tools/input/progress.h"

namespace NSift {

enum class InputForm { kRaw, kHexLines };

// One message, good only during the call that hands it on.
struct Message {
    std::string_view mDelivery;  // what the host is given: the message and what ends it
    std::string_view mText;      // what the parsing string is matched against
    bool mIsLost;  // it holds a NUL, at which the host's text ends, and so never comes to its end
    bool mIsCut;   // what stood behind a NUL is gone, and the message ends there
};

// Reads a file to its end and hands on each message as soon as it is whole: up to the
// end-of-message character, or as much as a message can hold. The end of the file ends its last
// message too. Of hexadecimal input each line is a message, blank lines aside.
class MessageSource {
  public:
    // eomChar: 0 for hexadecimal input, where the end of the text is the end of the message.
    // deliver: is given each message. complain: is told of lines that can't be read.
    MessageSource(std::uint8_t eomChar, InputForm form, std::function<void(const Message&)> deliver,
                  std::function<void(const std::string&)> complain);

    // path: "-" is standard input. Throws std::system_error if it can't be opened or read.
    void ReadFile(const std::string& path);

    // Whether the file being read may keep its reader waiting: it is no regular file.
    bool IsLive() const { return mIsLive; }

    // Whether a NUL byte came that cuts off what stands behind it: the host passes text that ends
    // at its first NUL.
    bool HasLostText() const { return mHasLostText; }

  private:
    void ReadRaw(std::FILE* file, Progress& progress);
    void ReadHexLines(std::FILE* file, const std::string& path, Progress& progress);
    void TakeHexLine(const std::string& line, const std::string& place);
    void Add(int byte);
    void EndMessage();
    void DeliverPiece();

    std::uint8_t mEomChar;
    InputForm mForm;
    std::function<void(const Message&)> mDeliver;
    std::function<void(const std::string&)> mComplain;
    std::string mPiece;
    bool mIsLive = false;
    bool mHasLostText = false;
};

}  // namespace NSift
