// Reads files, pipes and devices block by block, until something ends the run.

#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/system/input_file.h"

namespace NSift {

struct ReadOptions {
    NSystem::LineSettings mLine;                         // of a serial device
    std::optional<std::chrono::milliseconds> mDuration;  // of a run; none: without an end
};

enum class Ending {
    kEndOfFile,
    kFailed,   // the file can't be opened or read, or the device is gone
    kStopped,  // the run is over: the time is, it was interrupted, or the listener ended it
};

// Reads the files of one run, whose duration begins with the object.
class BlockReader {
  public:
    struct Listeners {
        // Called when a file is open, before anything is read.
        std::function<void(NSystem::InputKind)> mOpened;
        // Called with each block as soon as it is there; it is valid only during the call. Returns
        // false to end the run.
        std::function<bool(std::string_view)> mTake;
        // Called if no more bytes follow a block for a time of kPause. Empty: not needed.
        std::function<void()> mPause;
    };

    // Longer than any sender or adapter needs between two bytes of a message.
    static constexpr std::chrono::milliseconds kPause{50};

    explicit BlockReader(const ReadOptions& options);

    // Reads a file to its end. path: "-" is standard input. To a user at a terminal, reports what
    // it waits for.
    Ending Read(const std::string& path, const Listeners& listeners);

    // What went wrong, if the last Read returned kFailed.
    const std::string& Error() const { return mError; }

    // The number of bytes read so far, of all files.
    std::uint64_t BytesRead() const { return mBytesRead; }

  private:
    Ending ReadOpen(NSystem::InputFile& file, const std::string& name, const Listeners& listeners);
    void Announce(NSystem::InputKind kind, const std::string& name) const;
    NSystem::InputFile::Timeout NextTimeout(bool waitsForPause) const;
    bool IsOver() const;

    using Clock = std::chrono::steady_clock;

    NSystem::LineSettings mLine;
    std::optional<Clock::time_point> mEnd;  // of the run
    std::vector<char> mBlock;               // what was read last
    std::string mError;
    std::uint64_t mBytesRead = 0;
};

}  // namespace NSift
