// Where messages come from: files, pipes and devices, read as they deliver.

#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace NSift {

// Reads a file to its end and hands on each piece of text as soon as it is whole: up to and with
// the end-of-message character, or as much as a message can hold. The end of the file ends its last
// message too.
class MessageSource {
  public:
    // deliver: is given a piece, and keeps nothing of it.
    MessageSource(std::uint8_t eomChar, std::function<void(const std::string&)> deliver);

    // path: "-" is standard input. Throws std::system_error if it can't be opened or read.
    void ReadFile(const std::string& path);

    // Whether a NUL byte came that cuts off what stands behind it: the host passes text that ends
    // at its first NUL.
    bool HasLostText() const { return mHasLostText; }

  private:
    void Take(int byte);
    void DeliverPiece();

    std::uint8_t mEomChar;
    std::function<void(const std::string&)> mDeliver;
    std::string mPiece;
    bool mHasLostText = false;
};

}  // namespace NSift
