#include "tools/input/block_reader.h"

#include <algorithm>
#include <iostream>
#include <system_error>

#include "tools/input/progress.h"
#include "tools/system/interruption.h"
#include "tools/system/terminal.h"

namespace NSift {

using NSystem::InputFile;
using NSystem::InputKind;

namespace {

constexpr std::size_t kBlockSize = std::size_t{64} << 10;

}  // namespace

BlockReader::BlockReader(const ReadOptions& options) : mLine(options.mLine), mBlock(kBlockSize)
{
    if (options.mDuration) mEnd = Clock::now() + *options.mDuration;
}

Ending BlockReader::Read(const std::string& path, const Listeners& listeners)
{
    const std::string name = path == "-" ? "standard input" : path;
    try {
        InputFile file(path, mLine);
        Announce(file.Kind(), name);
        listeners.mOpened(file.Kind());
        return ReadOpen(file, name, listeners);
    } catch (const std::system_error& error) {
        if (NSystem::Interruption() != 0) return Ending::kStopped;
        mError = name + ": " + error.what();
        return Ending::kFailed;
    }
}

Ending BlockReader::ReadOpen(InputFile& file, const std::string& name, const Listeners& listeners)
{
    Progress progress(name, file.Size());
    const bool isDevice = file.Kind() == InputKind::kDevice;
    bool waitsForPause = false;
    while (!IsOver()) {
        std::error_code error;
        const std::size_t count = file.Read(mBlock, NextTimeout(waitsForPause), error);
        if (error == std::errc::timed_out) {
            if (waitsForPause && !IsOver()) listeners.mPause();
            waitsForPause = false;
            continue;
        }
        if (error == std::errc::interrupted) return Ending::kStopped;
        if (count == 0 && !error && !isDevice) return Ending::kEndOfFile;
        if (count == 0) {
            mError = name + ": ";
            mError += error ? error.message() : "no more bytes can come";
            if (isDevice) mError += "; was the device unplugged?";
            return Ending::kFailed;
        }
        mBytesRead += count;
        progress.Advance(count);
        if (!listeners.mTake({mBlock.data(), count})) return Ending::kStopped;
        waitsForPause = static_cast<bool>(listeners.mPause);
    }
    return Ending::kStopped;
}

// Only people at a terminal need to know.
void BlockReader::Announce(InputKind kind, const std::string& name) const
{
    if (!NSystem::IsTerminal(stderr)) return;
    if (kind == InputKind::kKeyboard) {
        std::cerr << "sift: waiting for messages that you type; Ctrl-C ends it\n";
    } else if (kind == InputKind::kDevice) {
        std::cerr << "sift: reading " << name << " at " << mLine.mBaud << " baud, " << mLine.mFrame
                  << "; Ctrl-C ends it\n";
    }
}

InputFile::Timeout BlockReader::NextTimeout(bool waitsForPause) const
{
    InputFile::Timeout timeout;
    if (mEnd) timeout = std::chrono::ceil<std::chrono::milliseconds>(*mEnd - Clock::now());
    if (waitsForPause) timeout = std::min(timeout.value_or(kPause), kPause);
    return timeout;
}

bool BlockReader::IsOver() const
{
    return mEnd && Clock::now() >= *mEnd;
}

}  // namespace NSift
