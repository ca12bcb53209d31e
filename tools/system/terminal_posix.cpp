#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "tools/system/terminal.h"

namespace NSystem {

OutputSetup::OutputSetup() = default;

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
