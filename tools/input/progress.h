// A line on standard error that shows how much of a large file has been read.

#pragma once

#include <cstdint>
#include <optional>
#include <string>

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

    // To be called for each byte that was read.
    void Advance()
    {
        if (mStep != 0 && ++mRead % mStep == 0) Show();
    }

  private:
    void Show();

    std::string mPath;
    std::uint64_t mStep = 0;  // bytes in one per cent of the file; 0: not shown
    std::uint64_t mRead = 0;  // bytes
};

}  // namespace NSift
