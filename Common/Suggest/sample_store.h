// A bounded store of messages that are unlike each other.

#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>

#include "values.h"

namespace NSuggest {

// Keeps the first messages, and of the others a few of each shape: of those with the same
// characters but for their letters and digits.
class SampleStore {
  public:
    void Add(std::string_view message);

    // Keeps a few messages of each shape although there is no more space for others: those for
    // which a suggestion is needed. Returns true if the message is kept.
    bool AddUnlike(std::string_view message);

    // All messages, in the order in which they were added.
    Column Messages() const;

  private:
    using ShapeCounts = std::unordered_map<std::uint64_t, unsigned>;

    // Counts the message, and returns true if there are only few with its shape.
    static bool IsRare(ShapeCounts& ioCounts, std::string_view message);
    bool HasSpace(std::size_t messages) const;
    void Keep(std::string_view message);

    std::deque<std::string> mMessages;
    std::size_t mBytes = 0;  // of all messages
    ShapeCounts mSeen;
    ShapeCounts mUnlike;
};

}  // namespace NSuggest
