// Values of outputs as text.

#pragma once

#include <string>

#include "standin/stand_in_host.h"

namespace NSift {

// Returns a string as NExplain::Quoted does, a number with the fewest digits that read back as the
// same number.
std::string TextOf(const NStandIn::Value& value);

}  // namespace NSift
