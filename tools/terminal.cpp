#include "terminal.h"

#include <cstdlib>

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace NSift {

namespace {

std::string_view EnvironmentText(const char* name)
{
    const char* const text = std::getenv(name);
    return text != nullptr ? text : "";
}

#ifdef _WIN32

bool ShowsColours(std::FILE* stream)
{
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0 &&
           SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

#else

bool ShowsColours(std::FILE* stream)
{
    return IsTerminal(stream) && EnvironmentText("TERM") != "dumb";
}

#endif

const char* CodeOf(Role role)
{
    switch (role) {
        case Role::kName: return "36";
        case Role::kMark: return "1;31";
        case Role::kFault: return "31";
        case Role::kAside: return "2";
    }
    return "0";
}

}  // namespace

bool IsTerminal(std::FILE* stream)
{
#ifdef _WIN32
    return _isatty(_fileno(stream)) != 0;
#else
    return isatty(fileno(stream)) != 0;
#endif
}

Palette::Palette(std::FILE* stream)
    : mOn(EnvironmentText("NO_COLOR").empty() && ShowsColours(stream))
{
}

std::string Palette::Paint(Role role, std::string_view text) const
{
    if (!mOn || text.empty()) return std::string(text);
    return std::string("\x1B[") + CodeOf(role) + 'm' + std::string(text) + "\x1B[0m";
}

}  // namespace NSift
