#include "tools/system/input_file.h"

#include <sys/stat.h>
#include <sys/types.h>

#include <cerrno>
#include <system_error>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace NSystem {

namespace {

#ifdef _WIN32

using FileStatus = struct _stat64;

bool ReadStatus(std::FILE* file, FileStatus& outStatus)
{
    return _fstat64(_fileno(file), &outStatus) == 0;
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

std::optional<std::uint64_t> RegularFileSize(std::FILE* file)
{
    FileStatus status = {};
    if (!ReadStatus(file, status) || (status.st_mode & S_IFMT) != S_IFREG) return std::nullopt;
    return static_cast<std::uint64_t>(status.st_size);
}

}  // namespace NSystem
