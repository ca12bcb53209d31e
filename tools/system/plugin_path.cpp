#include "tools/system/plugin_path.h"

#include <cstdint>
#include <filesystem>
#include <system_error>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#elif defined(__APPLE__)
#include <mach-o/dyld.h>
#else
#include <sys/auxv.h>
#endif

namespace NSystem {

namespace {

namespace fs = std::filesystem;

fs::path ExecutablePath()
{
#ifdef _WIN32
    std::vector<wchar_t> buffer(32768);
    const DWORD length =
        GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
    return fs::path(buffer.data(), buffer.data() + length);
#elif defined(__APPLE__)
    std::uint32_t size = 0;
    _NSGetExecutablePath(nullptr, &size);
    std::vector<char> buffer(size);
    _NSGetExecutablePath(buffer.data(), &size);
    return fs::canonical(buffer.data());
#else
    std::error_code error;  // a small root has no /proc
    const fs::path path = fs::read_symlink("/proc/self/exe", error);
    return error ? fs::canonical(reinterpret_cast<const char*>(getauxval(AT_EXECFN))) : path;
#endif
}

}  // namespace

fs::path DefaultPluginPath()
{
    const fs::path folder = ExecutablePath().parent_path();
    const fs::path built = folder / WORD_SIFTER_MODULE_NAME;
    const fs::path installed =
        folder.parent_path() / WORD_SIFTER_MODULE_FOLDER / WORD_SIFTER_MODULE_NAME;
    return !fs::exists(built) && fs::exists(installed) ? installed : built;
}

}  // namespace NSystem
