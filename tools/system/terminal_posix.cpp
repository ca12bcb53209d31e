#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "tools/system/terminal.h"

namespace NSystem {

OutputSetup::OutputSetup()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) >= 0) continue;
        // Takes the number of the closed stream. Reading or writing there stays an error.
        open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

OutputSetup::~OutputSetup() = default;

bool IsTerminal(std::FILE* stream)
{
    return isatty(fileno(stream)) != 0;
}

bool ShowsColours(std::FILE* stream)
{
    const char* const terminal = std::getenv("TERM");
    return IsTerminal(stream) && (terminal == nullptr || terminal != std::string_view("dumb"));
}

const char* TerminalPath()
{
    return "/dev/tty";
}

}  // namespace NSystem
