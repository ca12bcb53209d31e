// A line on standard error that tells how far a large file has been read.

#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

namespace NSift {

// The size of a regular file, in bytes; none for pipes, devices and the like.
std::optional<std::uint64_t> RegularSize(std::FILE* file);

// Shown while it lives, and only if there is something to wait for and somebody who waits: the
// file is large, standard error is a terminal, and standard output isn't, so that the line stands
// undisturbed.
class Progress {
  public:
    Progress(std::string path, std::optional<std::uint64_t> size);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    // One byte was read.
    void Count()
    {
        if (mStep != 0 && ++mRead % mStep == 0) Show();
    }

  private:
    void Show();

    std::string mPath;
    std::uint64_t mStep = 0;  // bytes that make one per cent; 0: not shown
    std::uint64_t mRead = 0;
};

}  // namespace NSift
