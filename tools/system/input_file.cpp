#include "tools/system/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <filesystem>

#include "tools/system/interruption.h"
#include "tools/system/terminal.h"

#ifdef _WIN32
#include <io.h>
#include <share.h>
#include <string.h>
#include <windows.h>

#include "tools/system/path_text.h"
#include "tools/system/wide_text_windows.h"
#else
#include <unistd.h>
#endif

namespace NSystem {

namespace {

constexpr int kStandardInput = 0;

#ifdef _WIN32

using FileStatus = struct _stat64;
const auto kReadStatus = _fstat64;
const auto kClose = _close;

// A serial port such as COM12 has a name in the folder of devices; ports above COM9 have no other.
int Open(const std::string& path)
{
    const bool isPort = path.size() > 3 && _strnicmp(path.c_str(), "COM", 3) == 0 &&
                        path.find_first_not_of("0123456789", 3) == path.npos;
    const std::filesystem::path name = PathOf(isPort ? "\\\\.\\" + path : path);
    int file = -1;
    if (!isPort && std::filesystem::is_directory(name)) {
        errno = EISDIR;  // the reason of the system would be that access is denied
    } else {
        errno = _wsopen_s(&file, name.c_str(), _O_BINARY | (isPort ? _O_RDWR : _O_RDONLY),
                          isPort ? _SH_DENYRW : _SH_DENYNO, 0);
    }
    return file;
}

// Reads what is typed, as UTF-8 and with line feeds. Ctrl-Z at the start of a line ends the input.
int ReadConsoleLine(HANDLE console, char* outBytes, unsigned size)
{
    std::wstring line(size / 3, L'\0');
    DWORD length = 0;
    if (ReadConsoleW(console, line.data(), size / 3, &length, nullptr) == 0) {
        errno = EIO;
        return -1;
    }
    if (length == 0) {
        Sleep(100);  // after Ctrl-C, whose handler runs in another thread
        errno = EINTR;
        return -1;
    }
    line.resize(length);
    if (line.starts_with(L'\x1A')) return 0;
    if (line.ends_with(L"\r\n")) line.erase(line.size() - 2, 1);
    const std::string text = NarrowText(line);
    std::copy(text.begin(), text.end(), outBytes);
    return static_cast<int>(text.size());
}

int ReadFileOrConsole(int file, char* outBytes, unsigned size)
{
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(file));
    DWORD mode = 0;
    if (GetConsoleMode(handle, &mode) != 0) return ReadConsoleLine(handle, outBytes, size);
    return _read(file, outBytes, size);
}

const auto kReadBytes = ReadFileOrConsole;

#else

using FileStatus = struct stat;
const auto kReadStatus = fstat;
const auto kClose = close;
const auto kReadBytes = read;

// A device is opened without waiting for its carrier; a named pipe waits for its writer.
int Open(const std::string& path)
{
    constexpr int kFlags = O_RDONLY | O_NOCTTY | O_CLOEXEC;
    FileStatus status = {};
    if (stat(path.c_str(), &status) != 0 || !S_ISCHR(status.st_mode))
        return open(path.c_str(), kFlags);
    const int file = open(path.c_str(), kFlags | O_NONBLOCK);
    if (file >= 0) fcntl(file, F_SETFL, kFlags);
    return file;
}

#endif

std::optional<std::uint64_t> RegularFileSize(int file)
{
    FileStatus status = {};
    if (kReadStatus(file, &status) != 0 || (status.st_mode & S_IFMT) != S_IFREG)
        return std::nullopt;
    return static_cast<std::uint64_t>(status.st_size);
}

}  // namespace

InputFile::Descriptor::Descriptor(const std::string& path)
    : mNumber(path == "-" ? kStandardInput : Open(path)), mIsOpened(path != "-")
{
    if (mNumber < 0) throw std::system_error(errno, std::generic_category());
#ifdef _WIN32
    _setmode(mNumber, _O_BINARY);  // the C library opens standard input as text
#endif
}

InputFile::Descriptor::~Descriptor()
{
    if (mIsOpened) kClose(mNumber);
}

InputFile::InputFile(const std::string& path, const LineSettings& line)
    : mFile(path),
      mSize(RegularFileSize(mFile.mNumber)),
      mKind(mSize                              ? InputKind::kRegular
            : IsSerialLine(mFile.mNumber)      ? InputKind::kDevice
            : path == "-" && IsTerminal(stdin) ? InputKind::kKeyboard
                                               : InputKind::kStream)
{
    if (mKind == InputKind::kDevice) mLine.emplace(mFile.mNumber, line);
}

std::size_t InputFile::Read(std::span<char> buffer, Timeout timeout, std::error_code& outError)
{
    const bool isReady = mKind == InputKind::kRegular || WaitForBytes(mFile.mNumber, timeout);
    outError.clear();
    if (!isReady) outError = std::make_error_code(std::errc::timed_out);
    if (Interruption() != 0) outError = std::make_error_code(std::errc::interrupted);
    if (outError) return 0;
    const auto size = static_cast<unsigned>(std::min<std::size_t>(buffer.size(), INT_MAX));
    auto count = kReadBytes(mFile.mNumber, buffer.data(), size);
    while (count < 0 && errno == EINTR && Interruption() == 0)
        count = kReadBytes(mFile.mNumber, buffer.data(), size);
    if (count < 0) outError = {errno, std::generic_category()};
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}

}  // namespace NSystem
