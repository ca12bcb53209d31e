#include "tools/system/input_file.h"

#include <sys/stat.h>
#include <sys/types.h>

#include <algorithm>
#include <cerrno>
#include <climits>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#else
#include <unistd.h>
#endif

namespace NSystem {

namespace {

#ifdef _WIN32

using FileStatus = struct _stat64;

bool ReadStatus(std::FILE* file, FileStatus& outStatus)
{
    return _fstat64(_fileno(file), &outStatus) == 0;
}

int ReadBytes(std::FILE* file, std::span<char> buffer)
{
    const auto size = static_cast<unsigned>(std::min<std::size_t>(buffer.size(), INT_MAX));
    return _read(_fileno(file), buffer.data(), size);
}

// Standard input is opened by the C library, as text.
void SetBinary(std::FILE* file)
{
    _setmode(_fileno(file), _O_BINARY);
}

#else

using FileStatus = struct stat;

bool ReadStatus(std::FILE* file, FileStatus& outStatus)
{
    return fstat(fileno(file), &outStatus) == 0;
}

ssize_t ReadBytes(std::FILE* file, std::span<char> buffer)
{
    return read(fileno(file), buffer.data(), buffer.size());
}

void SetBinary(std::FILE* /*file*/) {}

#endif

}  // namespace

void InputCloser::operator()(std::FILE* file) const
{
    if (file != stdin) std::fclose(file);
}

InputFile OpenInputFile(const std::string& path)
{
    InputFile file(path == "-" ? stdin : std::fopen(path.c_str(), "rb"));
    if (file == nullptr) throw std::system_error(errno, std::generic_category(), path);
    SetBinary(file.get());
    return file;
}

std::size_t ReadSome(std::FILE* file, std::span<char> buffer, std::error_code& outError)
{
    auto count = ReadBytes(file, buffer);
    while (count < 0 && errno == EINTR) count = ReadBytes(file, buffer);
    if (count >= 0) return static_cast<std::size_t>(count);
    outError = {errno, std::generic_category()};
    return 0;
}

std::optional<std::uint64_t> RegularFileSize(std::FILE* file)
{
    FileStatus status = {};
    if (!ReadStatus(file, status) || (status.st_mode & S_IFMT) != S_IFREG) return std::nullopt;
    return static_cast<std::uint64_t>(status.st_size);
}

}  // namespace NSystem
