// How sift shows what the plug-in published, and what is wrong with a parsing string.

#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "standin/stand_in_host.h"

namespace NSift {

// Writes one line of name=value pairs, in the order of the outputs, for a message that matched.
// Strings that would be hard to read are quoted, and control bytes escaped. Without any capture it
// shows the trigger itself. outputs: the fixed one first.
void PrintValues(std::ostream& stream, const std::vector<NStandIn::Property>& outputs);

// Writes the message, the line of the parsing string with a caret under the place, and the byte
// position from 0.
void PrintPatternError(std::ostream& stream, const std::string& pattern,
                       const NStandIn::Validation& error);

}  // namespace NSift
