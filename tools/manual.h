// The texts about sift itself: --help and the manual page come from the same list of options.

#pragma once

#include <ostream>
#include <string>

namespace CLI {
class App;
}

namespace NSift {

extern const char kDescription[];

// The sections that stand behind the options.
std::string HelpFooter();

// Writes the page in the form that man reads.
void WriteManual(std::ostream& stream, const CLI::App& app);

}  // namespace NSift
