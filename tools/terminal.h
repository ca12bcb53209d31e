// What sift needs to know of the terminal: whether there is one, and colour.

#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace NSift {

// Whether a stream of the C library leads to a person at a terminal.
bool IsTerminal(std::FILE* stream);

// What a text is, which is what its colour tells.
enum class Role { kName, kMark, kFault, kAside };

// Paints texts for one stream: on a terminal that shows colours, unless the environment variable
// NO_COLOR says otherwise; else every text stays as it is.
class Palette {
  public:
    explicit Palette(std::FILE* stream);

    std::string Paint(Role role, std::string_view text) const;

  private:
    bool mOn;
};

}  // namespace NSift
