#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include "tools/system/terminal.h"

namespace NSystem {

namespace {

UINT sFormerCodePage = 0;  // of the console; 0 if it need not be restored

HANDLE HandleOf(std::FILE* stream)
{
    return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
}

}  // namespace

// The program shares its console with the shell, which goes on using the code page.
OutputSetup::OutputSetup()
{
    sFormerCodePage = GetConsoleOutputCP();
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    if (sFormerCodePage != 0) SetConsoleOutputCP(CP_UTF8);
}

OutputSetup::~OutputSetup()
{
    if (sFormerCodePage != 0) SetConsoleOutputCP(sFormerCodePage);
}

// _isatty also accepts NUL and serial ports.
bool IsTerminal(std::FILE* stream)
{
    DWORD mode = 0;
    return GetConsoleMode(HandleOf(stream), &mode) != 0;
}

bool ShowsColours(std::FILE* stream)
{
    DWORD mode = 0;
    return GetConsoleMode(HandleOf(stream), &mode) != 0 &&
           SetConsoleMode(HandleOf(stream), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

const char* TerminalPath()
{
    return "CONIN$";
}

}  // namespace NSystem
