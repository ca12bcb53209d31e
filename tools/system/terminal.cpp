#include "tools/system/terminal.h"

#include <cstdlib>
#include <string_view>

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace NSystem {

#ifdef _WIN32

bool IsTerminal(std::FILE* stream)
{
    return _isatty(_fileno(stream)) != 0;
}

bool ShowsColours(std::FILE* stream)
{
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0 &&
           SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

#else

bool IsTerminal(std::FILE* stream)
{
    return isatty(fileno(stream)) != 0;
}

bool ShowsColours(std::FILE* stream)
{
    const char* const terminal = std::getenv("TERM");
    return IsTerminal(stream) && (terminal == nullptr || terminal != std::string_view("dumb"));
}

#endif

}  // namespace NSystem
