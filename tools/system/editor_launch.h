// The text editor of the user's choice.

#pragma once

#include <filesystem>
#include <string>

namespace NSystem {

// Returns the command of an editor that the system has, for a user who hasn't chosen one.
const char* DefaultEditor();

// Runs an editor on a file and waits until it ends. command: for the system's shell, and may hold
// arguments. Returns true if the editor reports success.
bool RunEditor(const std::string& command, const std::filesystem::path& file);

}  // namespace NSystem
