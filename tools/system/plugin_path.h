// Where sift finds the plug-in.

#pragma once

#include <filesystem>

namespace NSystem {

// Returns the path of the module beside this program, where a build puts it, or, if there is none,
// in the library folder that it is installed to. Without either, returns the first.
std::filesystem::path DefaultPluginPath();

}  // namespace NSystem
