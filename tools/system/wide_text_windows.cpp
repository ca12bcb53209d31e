#include "tools/system/wide_text_windows.h"

#include <windows.h>

namespace NSystem {

std::wstring WideText(std::string_view utf8)
{
    const auto size = static_cast<int>(utf8.size());
    std::wstring utf16(utf8.size(), L'\0');  // never longer in these units
    utf16.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, utf16.data(), size)));
    return utf16;
}

std::string NarrowText(std::wstring_view utf16)
{
    const auto size = static_cast<int>(utf16.size());
    std::string utf8(3 * utf16.size(), '\0');
    utf8.resize(static_cast<std::size_t>(WideCharToMultiByte(
        CP_UTF8, 0, utf16.data(), size, utf8.data(), 3 * size, nullptr, nullptr)));
    return utf8;
}

}  // namespace NSystem
