#include "tools/system/path_text.h"

namespace NSystem {

std::filesystem::path PathOf(std::string_view text)
{
    return text;
}

std::string TextOf(const std::filesystem::path& path)
{
    return path.string();
}

}  // namespace NSystem
