// Files that are written completely or not at all.

#pragma once

#include <filesystem>
#include <string>

namespace NSystem {

// Creates a file that only its owner may read, with text as its content. Throws std::system_error,
// also if the file exists.
void WriteNewFile(const std::filesystem::path& path, const std::string& text);

// Replaces the content of a file, or creates it. After a failure or a crash the file holds either
// the old or the new text. Keeps the permissions and, as far as the system allows it, the owner;
// follows a link. Throws std::system_error, also if the path is no file but a device or the like.
void ReplaceFile(const std::filesystem::path& path, const std::string& text);

// Returns the path of a file that doesn't exist: folder, then stem, a number and extension.
std::filesystem::path UnusedPath(const std::filesystem::path& folder, const std::string& stem,
                                 const std::string& extension);

}  // namespace NSystem
