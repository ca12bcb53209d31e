#include <dlfcn.h>

#include <stdexcept>

#include "tools/system/shared_library.h"

namespace NSystem {

SharedLibrary::SharedLibrary(const std::filesystem::path& path)
    : mHandle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL))
{
    if (mHandle != nullptr) return;
    const char* const error = dlerror();
    throw std::runtime_error(error != nullptr ? error : "unknown error");
}

SharedLibrary::~SharedLibrary()
{
    dlclose(mHandle);
}

void* SharedLibrary::Find(const char* name) const
{
    return dlsym(mHandle, name);
}

}  // namespace NSystem
