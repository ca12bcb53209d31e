// The functions of the try-it box, natively: the peer of the module in the help page. Each line of
// standard input is a call: the parsing string, the deliveries in the format of WordSifterTry, and
// the end-of-message character, all in hexadecimal. Prints the JSON of each call on a line.

#include <iostream>
#include <string>

#include "web/try_box.h"

namespace {

std::string BytesOf(const std::string& hex)
{
    std::string bytes;
    for (std::size_t i = 1; i + 1 < hex.size(); i += 2) {  // after a letter, so that none is empty
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

}  // namespace

int main()
{
    std::string pattern, deliveries;
    for (std::uint32_t eomChar = 0; std::cin >> pattern >> deliveries >> std::hex >> eomChar;) {
        const std::string string = BytesOf(pattern), text = BytesOf(deliveries);
        std::cout << WordSifterTry(string.data(), string.size(), text.data(), text.size(), eomChar,
                                   0, 1000, 0)
                  << '\n';
    }
}
