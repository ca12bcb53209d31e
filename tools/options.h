// The command line of sift.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/input/message_source.h"

namespace NSift {

// Exit statuses, as grep has them.
inline constexpr int kExitMatched = 0;
inline constexpr int kExitNothingMatched = 1;
inline constexpr int kExitTrouble = 2;  // bad usage, bad parsing string, unreadable file

enum class Task { kMatch, kCheck, kExplain };
enum class Format { kText, kJson, kCsv, kCount };

struct Options {
    Task mTask = Task::kMatch;
    std::string mPattern;             // the parsing string itself
    std::string mPatternFile;         // where it came from; empty: the command line
    std::vector<std::string> mFiles;  // none: standard input; "-" is standard input too
    std::uint8_t mEomChar = '\n';
    InputForm mInputForm = InputForm::kRaw;
    Format mFormat = Format::kText;
    bool mEdit = false;
    bool mTrace = false;
    bool mMisses = false;
    std::string mPlugin;  // path of the module
};

// Reads the command line. If there is nothing to run, because of --help or of a mistake, which it
// reports on standard error, returns nothing and sets an exit status.
std::optional<Options> ParseOptions(int argc, char** argv, int& outExitStatus);

}  // namespace NSift
