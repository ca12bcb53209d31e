// What is wrong with a parsing string, as text.

#pragma once

#include <ostream>
#include <string>

#include "Common/Explain/fault.h"
#include "standin/stand_in_host.h"
#include "tools/output/palette.h"

namespace NSift {

// Returns what is wrong with a parsing string that the plug-in refused with error.
NExplain::Fault FaultOf(const std::string& parseString, const NStandIn::Validation& error);

// Writes the message, the line of the parsing string with carets under the fault, the byte offset
// from 0, and the hints or, without a hint, the needs.
void PrintFault(std::ostream& stream, const std::string& parseString, const NExplain::Fault& fault,
                const Palette& palette);

}  // namespace NSift
