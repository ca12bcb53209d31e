#include "tools/input/progress.h"

#include <sys/stat.h>
#include <sys/types.h>

#include <iostream>
#include <utility>

#include "tools/system/terminal.h"

namespace NSift {

namespace {

constexpr std::uint64_t kLargeFile = std::uint64_t{8} << 20;
constexpr char kClearLine[] = "\r\x1B[K";

}  // namespace

std::optional<std::uint64_t> RegularSize(std::FILE* file)
{
#ifdef _WIN32
    struct _stat64 status = {};
    if (_fstat64(_fileno(file), &status) != 0 || (status.st_mode & _S_IFREG) == 0) {
        return std::nullopt;
    }
#else
    struct stat status = {};
    if (fstat(fileno(file), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
#endif
    return static_cast<std::uint64_t>(status.st_size);
}

Progress::Progress(std::string path, std::optional<std::uint64_t> size) : mPath(std::move(path))
{
    if (size.value_or(0) < kLargeFile || !NSystem::IsTerminal(stderr) ||
        NSystem::IsTerminal(stdout))
        return;
    mStep = *size / 100;
    Show();
}

Progress::~Progress()
{
    if (mStep != 0) std::cerr << kClearLine << std::flush;
}

void Progress::Show()
{
    std::cerr << kClearLine << "sift: " << mPath << ": " << mRead / mStep << " %" << std::flush;
}

}  // namespace NSift
