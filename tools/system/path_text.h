// Paths as the user writes and reads them: in UTF-8 on Windows, in the system's own bytes
// elsewhere.

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace NSystem {

std::filesystem::path PathOf(std::string_view text);
std::string TextOf(const std::filesystem::path& path);

}  // namespace NSystem
