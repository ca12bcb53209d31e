#include <io.h>
#include <windows.h>

#include "tools/system/terminal.h"

namespace NSystem {

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

const char* TerminalPath()
{
    return "CONIN$";
}

}  // namespace NSystem
