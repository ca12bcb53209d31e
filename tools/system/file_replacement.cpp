#include "tools/system/file_replacement.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <memory>
#include <system_error>

#include "tools/system/path_text.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace NSystem {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void ThrowErrno(const fs::path& path)
{
    throw std::system_error(errno, std::generic_category(), TextOf(path));
}

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

#ifdef _WIN32

// Of the modes of fopen, "x" isn't known to every C library.
std::FILE* OpenNewFile(const fs::path& path)
{
    int handle = -1;
    errno = _wsopen_s(&handle, path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _SH_DENYWR,
                      _S_IREAD | _S_IWRITE);
    return handle < 0 ? nullptr : _fdopen(handle, "wb");
}

bool ReachesDisk(std::FILE* file)
{
    return _commit(_fileno(file)) == 0;
}

void KeepOwner(const fs::path& /*from*/, const fs::path& /*to*/) {}

void FolderReachesDisk(const fs::path& /*folder*/) {}

#else

std::FILE* OpenNewFile(const fs::path& path)
{
    const int handle =
        open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    return handle < 0 ? nullptr : fdopen(handle, "wb");
}

bool ReachesDisk(std::FILE* file)
{
    return fsync(fileno(file)) == 0;
}

// Only a privileged user may give a file away; otherwise the new file stays the user's own.
void KeepOwner(const fs::path& from, const fs::path& to)
{
    struct stat status = {};
    if (stat(from.c_str(), &status) == 0 && chown(to.c_str(), status.st_uid, status.st_gid) != 0) {
        errno = 0;
    }
}

// Makes the new name survive a crash. Failures are ignored: some file systems can't do this, and
// the old text is then still there.
void FolderReachesDisk(const fs::path& folder)
{
    const int handle = open(folder.c_str(), O_RDONLY | O_CLOEXEC);
    if (handle < 0) return;
    fsync(handle);
    close(handle);
}

#endif

}  // namespace

void WriteNewFile(const fs::path& path, const std::string& text)
{
    std::unique_ptr<std::FILE, FileCloser> file(OpenNewFile(path));
    if (file == nullptr) ThrowErrno(path);
    const bool written = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size() &&
                         std::fflush(file.get()) == 0 && ReachesDisk(file.get());
    if (written) return;
    const std::error_code reason(errno, std::generic_category());
    file.reset();
    std::error_code ignored;
    fs::remove(path, ignored);
    throw std::system_error(reason, TextOf(path));
}

void ReplaceFile(const fs::path& path, const std::string& text)
{
    const fs::path target = fs::weakly_canonical(path);
    // Moving a file to the place of a device or a pipe would remove that.
    if (fs::exists(target) && !fs::is_regular_file(target)) {
        throw std::system_error(std::make_error_code(std::errc::operation_not_permitted),
                                TextOf(path));
    }
    const std::string stem = '.' + TextOf(target.filename());
    const fs::path written = UnusedPath(target.parent_path(), stem, "");
    try {
        WriteNewFile(written, text);
        if (fs::exists(target)) {
            KeepOwner(target, written);
            fs::permissions(written, fs::status(target).permissions());
        }
        fs::rename(written, target);
    } catch (...) {
        std::error_code ignored;
        fs::remove(written, ignored);
        throw;
    }
    FolderReachesDisk(target.parent_path());
}

fs::path UnusedPath(const fs::path& folder, const std::string& stem, const std::string& extension)
{
    fs::path path;
    do {
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        path = folder / PathOf(stem + '.' + std::to_string(now) + extension);
    } while (fs::exists(fs::symlink_status(path)));
    return path;
}

}  // namespace NSystem
