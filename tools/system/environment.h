// What the system passes to the program. All texts are UTF-8 on Windows, bytes elsewhere.

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace NSystem {

// Returns the arguments of the program, without its name. argc and argv: those of main.
std::vector<std::string> Arguments(int argc, char** argv);

// Returns the value of an environment variable; none if it isn't set.
std::optional<std::string> EnvironmentVariable(const char* name);

}  // namespace NSystem
