// Colour in the output.

#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace NSift {

// What a text means, which decides its colour.
enum class Role { kName, kMark, kFault, kAside };

// Paints texts for one stream: on a terminal that shows colours, unless the environment variable
// NO_COLOR is set; otherwise every text stays as it is.
class Palette {
  public:
    explicit Palette(std::FILE* stream);

    std::string Paint(Role role, std::string_view text) const;

  private:
    bool mOn;
};

}  // namespace NSift
