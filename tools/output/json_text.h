// Texts as JSON.

#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

namespace NSift {

using Json = nlohmann::ordered_json;

// JSON has no string for bytes that are not UTF-8; an object with their hexadecimal digits replaces
// it.
Json TextJson(std::string_view text);

}  // namespace NSift
