// Suggests parsing strings for messages.

#pragma once

#include <string>

#include "tools/options.h"

namespace NSift {

// Prints a parsing string for each kind of message in the files. Returns the exit status.
int SuggestPatterns(const Options& options);

// Returns a parsing string for the most frequent kind of message that has outputs, and reports on
// standard error what it matches. Empty: there is none.
std::string SuggestedPattern(const Options& options);

}  // namespace NSift
