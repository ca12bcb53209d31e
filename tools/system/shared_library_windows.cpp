#include <windows.h>

#include <bit>
#include <stdexcept>
#include <string>

#include "tools/system/shared_library.h"

namespace NSystem {

SharedLibrary::SharedLibrary(const std::filesystem::path& path)
    : mHandle(LoadLibraryW(path.c_str()))
{
    if (mHandle != nullptr) return;
    const DWORD error = GetLastError();
    throw std::runtime_error("can't load " + path.string() + ": Windows error " +
                             std::to_string(error));
}

SharedLibrary::~SharedLibrary()
{
    FreeLibrary(static_cast<HMODULE>(mHandle));
}

void* SharedLibrary::Find(const char* name) const
{
    return std::bit_cast<void*>(GetProcAddress(static_cast<HMODULE>(mHandle), name));
}

}  // namespace NSystem
