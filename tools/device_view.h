// Shows what a device sends, before there is any parsing string.

#pragma once

#include "tools/options.h"

namespace NSift {

// Prints the bytes of the files on standard output as they come, and at the end what they seem to
// be. Returns the exit status.
int ShowBytes(const Options& options);

}  // namespace NSift
