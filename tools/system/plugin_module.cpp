#include "tools/system/plugin_module.h"

#include <bit>
#include <stdexcept>

#ifdef _WIN32
#include <windows.h>

#include <filesystem>
#else
#include <dlfcn.h>
#endif

namespace NSystem {

namespace {

constexpr char kExport[] = "GetActorInfo";

#ifdef _WIN32

void* Open(const std::string& path)
{
    return LoadLibraryW(std::filesystem::u8path(path).c_str());
}

void* FindExport(void* handle)
{
    return std::bit_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle), kExport));
}

void Close(void* handle)
{
    FreeLibrary(static_cast<HMODULE>(handle));
}

std::string LastError()
{
    return "Windows error " + std::to_string(GetLastError());
}

#else

void* Open(const std::string& path)
{
    return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* FindExport(void* handle)
{
    return dlsym(handle, kExport);
}

void Close(void* handle)
{
    dlclose(handle);
}

std::string LastError()
{
    const char* const error = dlerror();
    return error != nullptr ? error : "unknown error";
}

#endif

}  // namespace

PluginModule::PluginModule(const std::string& path) : mHandle(Open(path))
{
    if (mHandle == nullptr) throw std::runtime_error(LastError());
    mGetActorInfo = std::bit_cast<Export>(FindExport(mHandle));
    if (mGetActorInfo == nullptr) {
        Close(mHandle);
        throw std::runtime_error(path + " has no export " + kExport);
    }
}

PluginModule::~PluginModule()
{
    Close(mHandle);
}

}  // namespace NSystem
