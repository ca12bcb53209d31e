// Reads the definition string, in which the actor describes its fixed properties.

#pragma once

#include <string>
#include <vector>

#include "property.h"

namespace NStandIn {

// Appends the inputs and outputs that the string defines. Lines that define no property are
// ignored.
void ReadDefinitions(const std::string& definitions, std::vector<Property>& ioInputs,
                     std::vector<Property>& ioOutputs);

}  // namespace NStandIn
