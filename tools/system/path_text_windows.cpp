#include "tools/system/path_text.h"
#include "tools/system/wide_text_windows.h"

namespace NSystem {

std::filesystem::path PathOf(std::string_view text)
{
    return WideText(text);
}

std::string TextOf(const std::filesystem::path& path)
{
    return NarrowText(path.native());
}

}  // namespace NSystem
