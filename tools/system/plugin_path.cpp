#include "tools/system/plugin_path.h"

#include <cstdint>
#include <filesystem>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#elif defined(__APPLE__)
#include <mach-o/dyld.h>
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
    return fs::read_symlink("/proc/self/exe");
#endif
}

}  // namespace

std::string DefaultPluginPath()
{
    const fs::path folder = ExecutablePath().parent_path();
    const fs::path built = folder / WORD_SIFTER_MODULE_NAME;
    const fs::path installed =
        folder.parent_path() / WORD_SIFTER_MODULE_FOLDER / WORD_SIFTER_MODULE_NAME;
    return (!fs::exists(built) && fs::exists(installed) ? installed : built).string();
}

}  // namespace NSystem
