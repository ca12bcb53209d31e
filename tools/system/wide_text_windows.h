// UTF-8, which sift uses, and UTF-16, which Windows uses.

#pragma once

#include <string>
#include <string_view>

namespace NSystem {

// What isn't well formed becomes U+FFFD.
std::wstring WideText(std::string_view utf8);
std::string NarrowText(std::wstring_view utf16);

}  // namespace NSystem
