// Files that are written whole or not at all.

#pragma once

#include <filesystem>
#include <string>

namespace NSystem {

// Makes a file that wasn't there, only its owner may read, and holds text. Throws
// std::system_error.
void WriteNewFile(const std::filesystem::path& path, const std::string& text);

// Puts text in place of what the file holds, if there is one, so that whatever happens the one or
// the other is there. Permissions and, as far as it is allowed, the owner stay; a link is followed.
// Throws std::system_error.
void ReplaceFile(const std::filesystem::path& path, const std::string& text);

// The path of a file that isn't there: folder / stem, something, extension.
std::filesystem::path UnusedPath(const std::filesystem::path& folder, const std::string& stem,
                                 const std::string& extension);

}  // namespace NSystem
