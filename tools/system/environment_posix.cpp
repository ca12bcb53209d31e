#include <cstdlib>

#include "tools/system/environment.h"

namespace NSystem {

std::vector<std::string> Arguments(int argc, char** argv)
{
    return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

std::optional<std::string> EnvironmentVariable(const char* name)
{
    const char* const value = std::getenv(name);
    if (value == nullptr) return std::nullopt;
    return value;
}

}  // namespace NSystem
