// Where sift finds the plug-in.

#pragma once

#include <string>

namespace NSift {

// The module beside this program, as it is built, or in the library folder that it is installed
// to. Where neither is there, the first of them.
std::string DefaultPluginPath();

}  // namespace NSift
