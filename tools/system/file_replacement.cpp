#include "tools/system/file_replacement.h"

#include <cerrno>
#include <cstdio>
#include <memory>
#include <random>
#include <system_error>

#ifdef _WIN32
#include <io.h>
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
    throw std::system_error(errno, std::generic_category(), path.string());
}

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

#ifdef _WIN32

bool ReachesDisk(std::FILE* file)
{
    return _commit(_fileno(file)) == 0;
}

void KeepOwner(const fs::path& /*from*/, const fs::path& /*to*/) {}

void FolderReachesDisk(const fs::path& /*folder*/) {}

#else

bool ReachesDisk(std::FILE* file)
{
    return fsync(fileno(file)) == 0;
}

// Not everybody may give a file away; who may not has it.
void KeepOwner(const fs::path& from, const fs::path& to)
{
    struct stat status = {};
    if (stat(from.c_str(), &status) == 0 && chown(to.c_str(), status.st_uid, status.st_gid) != 0) {
        errno = 0;
    }
}

// The new name is safe only then. Not every file system knows how, and the old text is no loss.
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
    std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.string().c_str(), "wbx"));
    if (file == nullptr) ThrowErrno(path);
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
    const bool written = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size() &&
                         std::fflush(file.get()) == 0 && ReachesDisk(file.get());
    if (!written) ThrowErrno(path);
}

void ReplaceFile(const fs::path& path, const std::string& text)
{
    const fs::path target = fs::weakly_canonical(path);
    const std::string stem = target.filename().string();
    const fs::path written = UnusedPath(target.parent_path(), std::string(1, '.') + stem, "");
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
    std::random_device random;
    fs::path path;
    do {
        path = folder / (stem + '.' + std::to_string(random()) + extension);
    } while (fs::exists(fs::symlink_status(path)));
    return path;
}

}  // namespace NSystem
