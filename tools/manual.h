// The texts about sift itself: --help and the manual page come from the same list of options.

#pragma once

#include <ostream>

namespace CLI {
class App;
}

namespace NSift {

// Sets the description of app, the sections after the options, and the width of the lines.
void FormatHelp(CLI::App& app);

// Writes the page in the form that man reads.
void WriteManual(std::ostream& stream, const CLI::App& app);

}  // namespace NSift
