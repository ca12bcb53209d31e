// Texts and explanations as JSON.

#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

#include "Common/Explain/caution.h"
#include "Common/Explain/fault.h"
#include "Common/Explain/miss.h"
#include "Common/Explain/trace.h"

namespace NSift {

using Json = nlohmann::ordered_json;

// JSON has no string for bytes that are not UTF-8; an object with their hexadecimal digits replaces
// it.
Json TextJson(std::string_view text);

// Objects with the members that the manual page lists, and the list of the steps of a match.
Json FaultJson(const NExplain::Fault& fault);
Json CautionJson(const NExplain::Caution& caution);
Json StepsJson(const NExplain::Trace& trace);

// trace: of a match that failed.
Json MissJson(const NExplain::Pieces& pieces, const NExplain::Trace& trace,
              const NExplain::Miss& miss);

}  // namespace NSift
