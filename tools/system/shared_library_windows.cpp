#include <windows.h>

#include <bit>
#include <string>
#include <system_error>

#include "tools/system/path_text.h"
#include "tools/system/shared_library.h"

namespace NSystem {

SharedLibrary::SharedLibrary(const std::filesystem::path& path)
    : mHandle(LoadLibraryW(path.c_str()))
{
    if (mHandle != nullptr) return;
    const std::error_code error(static_cast<int>(GetLastError()), std::system_category());
    throw std::system_error(error, "can't load " + TextOf(path));
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
