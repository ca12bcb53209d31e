// The text that a function for the browser returns.

#pragma once

#include <functional>

#include "tools/output/json_text.h"

namespace NWeb {

using NSift::Json;
using NSift::TextJson;

// Returns the text of what make returns, which ends with a NUL, in memory that the next call
// reuses; null if make throws.
const char* KeepText(const std::function<Json()>& make);

}  // namespace NWeb
