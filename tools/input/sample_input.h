// Messages to learn from.

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/input/message_source.h"

namespace NSift {

// The messages of files, pipes and devices, which can be passed on more than once. Files are read
// again each time; of what can't be, the first 16 MiB are kept.
class SampleInput {
  public:
    // files: "-" is standard input. eomChar: none: it is found.
    SampleInput(std::vector<std::string> files, std::optional<std::uint8_t> eomChar, InputForm form,
                const ReadOptions& reading);

    // To be called once, before everything below. Of a device, reads 200 messages unless there is
    // a duration. Errors go to standard error. Returns false if there was one.
    bool Read();

    // None: no end was found. 0: messages end at NUL and where a device pauses.
    std::optional<std::uint8_t> FoundEomChar() const { return mEomChar; }

    // True if the bytes are no text and no end of the messages was found: there are no messages.
    bool IsOpen() const { return mIsOpen; }

    // Calls take with each message that reaches the parsing string.
    void ForEach(const std::function<void(std::string_view)>& take);

    // True if a signal ended the reading of files before their end.
    bool IsInterrupted() const;

    // True if more messages came than are kept.
    bool IsPart() const { return mIsLive && mIsPart; }

    // The number of messages that a NUL keeps from the parsing string. After ForEach.
    std::size_t Lost() const { return mLost; }

  private:
    std::uint8_t EomChar() const { return mEomChar.value_or(0); }
    void ReadBytes(const std::string& path, BlockReader& reader);
    bool IsEnough(NSystem::InputKind kind);
    void CutBytes();
    void ReadMessages(const std::function<void(std::string_view)>& take, bool isFirst);
    void Keep(std::string_view message);

    const std::vector<std::string> mFiles;
    std::optional<std::uint8_t> mEomChar;
    const InputForm mForm;
    const ReadOptions mReading;
    bool mIsLive;            // some input can't be read again
    bool mIsDevice = false;  // the input comes from a serial device
    bool mIsOpen = false;
    bool mIsPart = false;
    bool mHasTrouble = false;
    std::size_t mLost = 0;
    std::size_t mEnough = 0;           // bytes after which to look for enough messages again
    std::string mBytes;                // the first of all files
    std::vector<std::size_t> mPauses;  // of a device: positions in mBytes
    std::vector<std::string> mKept;    // messages, if mIsLive
    std::size_t mKeptBytes = 0;        // in them
};

}  // namespace NSift
