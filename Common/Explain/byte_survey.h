// What somebody who connects a new device wants to know about the bytes that it sends.

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace NExplain {

struct Survey {
    std::uint64_t mBytes;
    std::uint64_t mHighBytes;  // above 127
    std::uint64_t mNuls;
    std::uint64_t mPauses;
    bool mIsText;             // most bytes are ASCII or UTF-8 text
    std::string mEnd;         // how messages seem to end: a byte, or CR LF; empty if unknown
    std::uint64_t mMessages;  // ended by mEnd or, if that is unknown, by pauses
    std::uint64_t mShortest;  // bytes of a message, without mEnd; 0 with fewer than two messages
    std::uint64_t mLongest;   // as mShortest
};

// Takes a stream of bytes of any length. The first message is counted but not measured: most
// devices are connected while they send.
class ByteSurvey {
  public:
    void Add(std::string_view bytes);
    // The sender pauses after the bytes so far. Has no effect without a byte since the last pause.
    void AddPause();

    Survey Result() const;

  private:
    // The messages that end in one way.
    struct Messages {
        void End(std::uint64_t position);

        std::uint64_t mCount = 0;
        std::uint64_t mLastEnd = 0;  // position after it
        std::uint64_t mShortest = 0;
        std::uint64_t mLongest = 0;
    };

    void AddLineFeed();
    void AddToCharacter(unsigned char byte);
    template <typename Predicate>
    std::uint64_t TotalOf(Predicate wanted) const;
    bool IsText() const;
    std::string FindEnd() const;
    bool HasLines() const;
    std::optional<unsigned char> UsualEnd() const;
    std::optional<unsigned char> EndBeforePauses() const;

    std::array<Messages, 256> mByByte;
    Messages mByPause;
    std::array<std::uint64_t, 256> mBeforePauses = {};
    std::uint64_t mBytes = 0;
    std::uint64_t mCrLfs = 0;
    bool mHasLoneLineFeed = false;  // without CR before it, except the first line feed of all
    std::uint64_t mUtf8Bytes = 0;   // above 127, of complete characters
    std::uint64_t mUtf8Length = 0;  // of the character that began last; 0: none
    std::uint64_t mUtf8Seen = 0;    // of its bytes
    unsigned char mLast = 0;
};

// Returns what the survey found, in plain words: first how messages seem to end.
std::vector<std::string> Findings(const Survey& survey);

}  // namespace NExplain
