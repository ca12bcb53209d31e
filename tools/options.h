// What the user of sift asked for.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace NSift {

// Exit statuses, as grep has them.
inline constexpr int kExitMatched = 0;
inline constexpr int kExitNothingMatched = 1;
inline constexpr int kExitTrouble = 2;  // bad usage, bad parsing string, unreadable file

struct Options {
    std::string mPattern;             // the parsing string itself
    std::vector<std::string> mFiles;  // none: standard input; "-" is standard input too
    std::uint8_t mEomChar = '\n';
    std::string mPlugin;  // path of the module
};

// Reads the command line. Where there is nothing to run (help, or a mistake, which is told on
// standard error) it gives no options and an exit status.
std::optional<Options> ParseOptions(int argc, char** argv, int& outExitStatus);

}  // namespace NSift
