#include "tools/output/palette.h"

#include "tools/system/environment.h"
#include "tools/system/terminal.h"

namespace NSift {

namespace {

bool RefusesColour()
{
    return !NSystem::EnvironmentVariable("NO_COLOR").value_or("").empty();
}

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

Palette::Palette(std::FILE* stream) : mOn(!RefusesColour() && NSystem::ShowsColours(stream)) {}

std::string Palette::Paint(Role role, std::string_view text) const
{
    if (!mOn || text.empty()) return std::string(text);
    return std::string("\x1B[") + CodeOf(role) + 'm' + std::string(text) + "\x1B[0m";
}

}  // namespace NSift
