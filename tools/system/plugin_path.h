// Where sift finds the plug-in.

#pragma once

#include <string>

namespace NSystem {

// The module beside this program, as it is built, or in the library folder that it is installed
// to. Where neither is there, the first of them.
std::string DefaultPluginPath();

}  // namespace NSystem
