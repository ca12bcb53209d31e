// A line on standard error that shows how much of a large file has been read.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace NSift {

// Shows its line while it lives, but only if the file is large, standard error is a terminal and
// standard output isn't, so that no other output disturbs the line.
class Progress {
  public:
    // path: as it is shown. size: of the file in bytes; none if it isn't known.
    Progress(std::string path, std::optional<std::uint64_t> size);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    // To be called after each read. read: the number of bytes.
    void Advance(std::size_t read)
    {
        if (mStep == 0) return;
        const std::uint64_t before = std::exchange(mRead, mRead + read);
        if (mRead / mStep != before / mStep) Show();
    }

  private:
    void Show();

    std::string mPath;
    std::uint64_t mStep = 0;  // bytes in one per cent of the file; 0: not shown
    std::uint64_t mRead = 0;  // bytes
};

}  // namespace NSift
