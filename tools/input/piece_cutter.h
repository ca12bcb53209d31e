// Cuts a stream of bytes into pieces.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace NSift {

// Takes a stream block by block, and passes on each piece as soon as it is complete: after the byte
// that ends a piece, which belongs to the piece, and at the greatest length. Only a piece that
// continues in the next block is copied.
class PieceCutter {
  public:
    // end: the byte that ends a piece. longest: the greatest length of a piece, with that byte; at
    // least 1.
    PieceCutter(char end, std::size_t longest) : mEnd(end), mLongest(longest) {}

    // Calls take with each piece that the block completes. A piece is valid only during the call.
    template <typename Take>
    void Cut(std::string_view block, Take take)
    {
        while (!block.empty()) {
            const std::string_view part = block.substr(0, mLongest - mBegun.size());
            const std::size_t end = part.find(mEnd);
            const std::string_view rest = part.substr(0, end == part.npos ? end : end + 1);
            block.remove_prefix(rest.size());
            if (end == part.npos && mBegun.size() + rest.size() < mLongest) {
                mBegun += rest;
            } else if (mBegun.empty()) {
                take(rest);
            } else {
                mBegun += rest;
                take(std::string_view(mBegun));
                mBegun.clear();
            }
        }
    }

    // Calls take with the piece that isn't complete yet, completed by the byte that ends a piece,
    // if there is one. To be called at the end of the stream.
    template <typename Take>
    void Finish(Take take)
    {
        if (mBegun.empty()) return;
        mBegun += mEnd;
        take(std::string_view(mBegun));
        mBegun.clear();
    }

  private:
    char mEnd;
    std::size_t mLongest;
    std::string mBegun;  // the piece that isn't complete yet
};

}  // namespace NSift
