#include "tools/input/progress.h"

#include <cstdio>
#include <iostream>
#include <utility>

#include "tools/system/terminal.h"

namespace NSift {

namespace {

constexpr std::uint64_t kLargeFile = std::uint64_t{8} << 20;  // bytes
constexpr char kClearLine[] = "\r\x1B[K";

}  // namespace

Progress::Progress(std::string path, std::optional<std::uint64_t> size) : mPath(std::move(path))
{
    if (size.value_or(0) < kLargeFile) return;
    if (!NSystem::IsTerminal(stderr) || NSystem::IsTerminal(stdout)) return;
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
