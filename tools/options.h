// The command line of sift.

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "tools/input/message_source.h"

namespace NSift {

// Exit statuses, as grep has them.
inline constexpr int kExitMatched = 0;
inline constexpr int kExitNothingMatched = 1;
inline constexpr int kExitTrouble = 2;  // bad usage, bad parsing string, unreadable file

enum class Task { kMatch, kCheck, kExplain, kShow, kSuggest };
enum class Format { kText, kJson, kCsv, kCount };

struct Options {
    Task mTask = Task::kMatch;
    std::string mPattern;             // the parsing string itself
    std::string mPatternFile;         // where it came from; empty: the command line
    std::vector<std::string> mFiles;  // at least one; "-" is standard input
    std::uint8_t mEomChar = '\n';
    bool mFindsEom = false;           // for suggestions: mEomChar isn't given
    std::vector<std::string> mNames;  // of the outputs of a suggestion
    InputForm mInputForm = InputForm::kRaw;
    ReadOptions mReading;
    Format mFormat = Format::kText;
    bool mEdit = false;
    bool mTrace = false;
    bool mMisses = false;
    bool mRest = false;
    std::filesystem::path mPlugin;  // the module
};

// Reads the command line. arguments: without the name of the program. If there is nothing to run,
// because of --help or of a mistake, which it reports on standard error, returns nothing and sets
// an exit status.
std::optional<Options> ParseOptions(std::vector<std::string> arguments, int& outExitStatus);

}  // namespace NSift
