// Files, pipes and devices to read bytes from.

#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <system_error>

#include "tools/system/serial_line.h"

namespace NSystem {

enum class InputKind {
    kRegular,   // a file, whose reader never has to wait
    kStream,    // a pipe and the like
    kKeyboard,  // the terminal at which the user sits
    kDevice,    // a serial device
};

// A file that is read as it is, byte by byte. A serial device is set up for as long as it is open.
class InputFile {
  public:
    using Timeout = std::optional<std::chrono::milliseconds>;

    // path: "-" is standard input, which is left open. line: for a serial device. Doesn't wait for
    // the other end of a serial device. Throws std::system_error.
    InputFile(const std::string& path, const LineSettings& line);

    InputKind Kind() const { return mKind; }

    // Returns the size of a regular file in bytes; none for other files.
    std::optional<std::uint64_t> Size() const { return mSize; }

    // Waits until there are bytes to read, and reads as many as there are, at most the size of the
    // buffer, which must not be empty. timeout: none: waits forever. Returns the number of bytes; 0
    // at the end of the file, if a device is gone, and after an error, which is then in outError:
    // among others std::errc::timed_out, and std::errc::interrupted after an Interruption.
    std::size_t Read(std::span<char> buffer, Timeout timeout, std::error_code& outError);

  private:
    struct Descriptor {
        explicit Descriptor(const std::string& path);
        Descriptor(const Descriptor&) = delete;
        Descriptor& operator=(const Descriptor&) = delete;
        ~Descriptor();

        int mNumber;
        bool mIsOpened;  // false: standard input
    };

    Descriptor mFile;
    std::optional<std::uint64_t> mSize;
    InputKind mKind;
    std::optional<SerialLine> mLine;  // of a device; ends before its file is closed
};

}  // namespace NSystem
