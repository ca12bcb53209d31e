#include <windows.h>

#include <shellapi.h>

#include <memory>

#include "tools/system/environment.h"
#include "tools/system/wide_text_windows.h"

namespace NSystem {

namespace {

struct LocalFreer {
    void operator()(wchar_t** memory) const { LocalFree(static_cast<void*>(memory)); }
};

}  // namespace

// The arguments of main are in the code page of the system, and some C libraries replace a * in
// them by names of files.
std::vector<std::string> Arguments(int /*argc*/, char** /*argv*/)
{
    int count = 0;
    const std::unique_ptr<wchar_t*, LocalFreer> wide(CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) arguments.push_back(NarrowText(wide.get()[i]));
    return arguments;
}

std::optional<std::string> EnvironmentVariable(const char* name)
{
    const std::wstring wideName = WideText(name);
    std::wstring value(GetEnvironmentVariableW(wideName.c_str(), nullptr, 0), L'\0');
    if (value.empty()) return std::nullopt;
    value.resize(
        GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size())));
    return NarrowText(value);
}

}  // namespace NSystem
