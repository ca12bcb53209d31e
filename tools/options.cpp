#include "tools/options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "tools/manual.h"
#include "tools/system/plugin_path.h"

namespace NSift {

namespace {

std::optional<std::uint8_t> NumberIn(const std::string& text, int base)
{
    std::uint8_t value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc() || rest != text.data() + text.size()) return std::nullopt;
    return value;
}

// text: one character, an escape or a number. Digits are always a number.
std::optional<std::uint8_t> CharacterIn(const std::string& text)
{
    if (const auto number = NumberIn(text, 10)) return number;
    if (text.size() == 1) return static_cast<std::uint8_t>(text[0]);
    if (text.size() > 2 && text.compare(0, 2, "\\x") == 0) return NumberIn(text.substr(2), 16);
    if (text.size() != 2 || text[0] != '\\') return std::nullopt;
    switch (text[1]) {
        case 'n': return '\n';
        case 'r': return '\r';
        case 't': return '\t';
        case '0': return 0;
        case '\\': return '\\';
        default: return std::nullopt;
    }
}

// mayBeMissing: a file that doesn't exist reads as an empty one.
std::string ReadWholeFile(const std::string& path, bool mayBeMissing)
{
    if (mayBeMissing && !std::filesystem::exists(path)) return "";
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    // A folder opens but can't be read. Copying from an empty file would fail too.
    if (file.is_open() && file.peek() != std::ifstream::traits_type::eof()) text << file.rdbuf();
    if (!file.is_open() || file.bad() || std::filesystem::is_directory(path)) {
        throw CLI::ValidationError("-f", "can't read " + path);
    }
    return text.str();
}

// Options that exclude each other: each of mOne excludes each of mOther.
struct Exclusion {
    std::vector<const char*> mOne;
    std::vector<const char*> mOther;
};

const Exclusion kExclusions[] = {
    {{"--json"}, {"--csv", "--count", "--explain"}},
    {{"--csv"}, {"--count", "--explain", "--check"}},
    {{"--count"}, {"--explain", "--check"}},
    {{"--explain"}, {"--check"}},
    {{"--trace", "--misses"}, {"--csv", "--count", "--explain", "--check"}},
    {{"--hex"}, {"--eom"}},
};

void RefuseExclusions(const CLI::App& app)
{
    for (const Exclusion& exclusion : kExclusions) {
        for (const char* const one : exclusion.mOne) {
            for (const char* const other : exclusion.mOther) {
                if (app.count(one) == 0 || app.count(other) == 0) continue;
                throw CLI::ValidationError(one, std::string("can't be combined with ") + other);
            }
        }
    }
}

// The options as written, before they are checked against each other.
struct CommandLine {
    std::string mOperand;
    std::string mEomText = "\\n";
    bool mExplain = false;
    bool mCheck = false;
    bool mJson = false;
    bool mCsv = false;
    bool mCount = false;
    bool mHex = false;
    bool mManual = false;
};

void DefineOptions(CLI::App& app, CommandLine& outLine, Options& outOptions)
{
    app.add_option("PATTERN", outLine.mOperand, "The parsing string; with -f, the first input file")
        ->option_text(" ");
    app.add_option("FILE", outOptions.mFiles,
                   "Input files; - means standard input, which is also the default")
        ->option_text(" ");

    app.option_defaults()->group("The parsing string");
    app.add_option("-f,--file", outOptions.mPatternFile, "Read the parsing string from FILE")
        ->option_text("FILE");
    app.add_flag("--explain", outLine.mExplain,
                 "Explain in plain words what each piece of the parsing string takes and captures");
    app.add_flag("--check", outLine.mCheck,
                 "Compile the parsing string and list its outputs: name, type and id");
    app.add_flag(
        "--edit", outOptions.mEdit,
        "Start by editing the parsing string in an editor, until it compiles or you give up; "
        "with -f, write it back to FILE");

    app.option_defaults()->group("Messages");
    app.add_option("-e,--eom", outLine.mEomText,
                   "The end-of-message character: a character, an escape (\\n \\r \\t \\0 \\\\ "
                   "\\xNN) or a number from 0 to 255. The default is line feed. With 0, a message "
                   "ends at a NUL byte or at the end of the file")
        ->option_text("CHAR");
    app.add_flag("--hex", outLine.mHex,
                 "Read messages written as hexadecimal digits, one message per line, with optional "
                 "spaces and commas. A byte 00 ends the message, as in the host");

    app.option_defaults()->group("Output");
    app.add_flag("--misses", outOptions.mMisses,
                 "For each message that doesn't match, show where it stopped and why");
    app.add_flag("--trace", outOptions.mTrace,
                 "For each message that matches, show what each piece took");
    app.add_flag("--json", outLine.mJson, "Print JSON, one object per line");
    app.add_flag("--csv", outLine.mCsv,
                 "Print comma-separated values, after a header line with the output names");
    app.add_flag("--count", outLine.mCount, "Print only the number of messages that matched");

    app.option_defaults()->group("Other");
    app.add_option("--plugin", outOptions.mPlugin,
                   "The plug-in module to run. The default is the one that comes with sift")
        ->option_text("PATH");
    app.set_help_flag("-h,--help", "Print this help and exit")->group("Other");
    app.set_version_flag("--version", "sift " WORD_SIFTER_VERSION, "Print the version and exit")
        ->group("Other");
    app.add_flag("--man", outLine.mManual, "Print the manual page and exit")->group("");
}

void FillOptions(const CLI::App& app, const CommandLine& line, Options& outOptions)
{
    RefuseExclusions(app);
    outOptions.mTask = line.mExplain ? Task::kExplain : line.mCheck ? Task::kCheck : Task::kMatch;
    outOptions.mFormat = line.mJson    ? Format::kJson
                         : line.mCsv   ? Format::kCsv
                         : line.mCount ? Format::kCount
                                       : Format::kText;
    if (outOptions.mPatternFile.empty()) {
        if (app.count("PATTERN") == 0 && !outOptions.mEdit) {
            throw CLI::RequiredError("PATTERN or -f");
        }
        outOptions.mPattern = line.mOperand;
    } else {
        outOptions.mPattern = ReadWholeFile(outOptions.mPatternFile, outOptions.mEdit);
        if (app.count("PATTERN") != 0) {
            outOptions.mFiles.insert(outOptions.mFiles.begin(), line.mOperand);
        }
    }
    const auto eomChar = CharacterIn(line.mEomText);
    if (!eomChar)
        throw CLI::ValidationError("--eom", "'" + line.mEomText +
                                                "' isn't a character: write the character "
                                                "itself, an escape (\\n \\r \\t \\0 \\\\ \\xNN) "
                                                "or a number from 0 to 255");
    outOptions.mEomChar = line.mHex ? std::uint8_t{0} : *eomChar;
    outOptions.mInputForm = line.mHex ? InputForm::kHexLines : InputForm::kRaw;
    // The loader would search for a name without a folder among the system's libraries.
    outOptions.mPlugin = outOptions.mPlugin.empty()
                             ? NSystem::DefaultPluginPath()
                             : std::filesystem::absolute(outOptions.mPlugin).string();
}

}  // namespace

std::optional<Options> ParseOptions(int argc, char** argv, int& outExitStatus)
{
    Options options;
    CommandLine line;
    CLI::App app("", "sift");
    FormatHelp(app);
    DefineOptions(app, line, options);
    try {
        app.parse(argc, argv);
        if (line.mManual) {
            WriteManual(std::cout, app);
            outExitStatus = kExitMatched;
            return std::nullopt;
        }
        FillOptions(app, line, options);
    } catch (const CLI::ParseError& error) {
        outExitStatus = app.exit(error) == 0 ? kExitMatched : kExitTrouble;
        return std::nullopt;
    }
    return options;
}

}  // namespace NSift
