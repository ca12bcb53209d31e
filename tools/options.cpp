#include "tools/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <iostream>
#include <locale>
#include <sstream>
#include <system_error>

#include "Common/Explain/word_lists.h"
#include "Common/Pattern/pattern_bytes.h"
#include "Common/Suggest/suggester.h"
#include "tools/manual.h"
#include "tools/system/input_file.h"
#include "tools/system/path_text.h"
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

// The forms of an end-of-message character but the character itself.
constexpr char kEomForms[] =
    "an escape (\\n \\r \\t \\0 \\\\ \\xNN), a name (CR LF NUL STX ETX EOT RS) or a number "
    "from 0 to 255 or from 0x00 to 0xFF";

// text: one character, an escape, a name or a number. Digits are always a number.
std::optional<std::uint8_t> CharacterIn(const std::string& text)
{
    constexpr std::pair<std::string_view, std::uint8_t> kNames[] = {
        {"NUL", 0}, {"STX", 2}, {"ETX", 3}, {"EOT", 4}, {"LF", '\n'}, {"CR", '\r'}, {"RS", 30}};
    for (const auto& [name, character] : kNames) {
        if (NPattern::EqualsIgnoringCase(text, name)) return character;
    }
    if (const auto number = NumberIn(text, 10)) return number;
    if (text.size() == 1) return static_cast<std::uint8_t>(text[0]);
    if (NPattern::EqualsIgnoringCase(text.substr(0, 2), "0x")) return NumberIn(text.substr(2), 16);
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

bool IsFrame(std::string_view text)
{
    constexpr std::string_view kEach[] = {"5678", "NEO", "12"};
    if (text.size() != std::size(kEach)) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (kEach[i].find(text[i]) == text.npos) return false;
    }
    return true;
}

// mayBeMissing: a file that doesn't exist reads as an empty one.
std::string ReadWholeFile(const std::string& name, bool mayBeMissing)
{
    if (mayBeMissing && !std::filesystem::exists(NSystem::PathOf(name))) return "";
    std::string text;
    std::error_code error;
    try {
        // Here a hyphen is the name of a file.
        NSystem::InputFile file(name == "-" ? "./-" : name, {});
        std::array<char, 4096> block{};
        while (const std::size_t size = file.Read(block, std::nullopt, error))
            text.append(block.data(), size);
    } catch (const std::system_error& notOpened) {
        error = notOpened.code();
    }
    if (error) throw CLI::ValidationError("-f", name + ": " + error.message());
    return text;
}

// Options that exclude each other: each of mOne excludes each of mOther.
struct Exclusion {
    std::vector<const char*> mOne;
    std::vector<const char*> mOther;
};

const Exclusion kExclusions[] = {
    {{"--show"},
     {"--file", "--explain", "--check", "--edit", "--hex", "--misses", "--trace", "--rest",
      "--json", "--csv", "--count"}},
    {{"--suggest"},
     {"--show", "--file", "--explain", "--check", "--edit", "--misses", "--trace", "--rest",
      "--csv", "--count"}},
    {{"--json"}, {"--csv", "--count", "--explain"}},
    {{"--csv"}, {"--count", "--explain", "--check"}},
    {{"--count"}, {"--explain", "--check"}},
    {{"--explain"}, {"--check"}},
    {{"--trace", "--misses", "--rest"}, {"--csv", "--count", "--explain", "--check"}},
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
    std::string mFile;
    std::string mPlugin;
    std::string mEomText = "\\n";
    std::string mDuration;
    bool mShow = false;
    bool mSuggest = false;
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
    app.add_option("PATTERN", outLine.mOperand,
                   "The parsing string; with -f, --show or --suggest, the first input file")
        ->option_text(" ");
    // Takes the first file; the others are extras. A list of files would turn [a,b] into a and b.
    app.add_option("FILE", outLine.mFile,
                   "Input files and serial devices; - means standard input, which is also the "
                   "default")
        ->option_text("...");
    app.allow_extras();

    app.option_defaults()->group("The parsing string");
    app.add_option("-f,--file", outOptions.mPatternFile, "Read the parsing string from FILE")
        ->option_text("FILE");
    app.add_flag("--explain", outLine.mExplain,
                 "Explain in plain words what each piece of the parsing string takes and captures");
    app.add_flag("--check", outLine.mCheck,
                 "Compile the parsing string and list its outputs: name, type and id");
    app.add_flag(
        "--edit", outOptions.mEdit,
        "Start by editing the parsing string in an editor, until it compiles or you give up, for "
        "example with an empty text; with -f, write it back to FILE. If there is none yet, but "
        "there are input files, start from a suggestion");
    app.add_flag(
        "--suggest", outLine.mSuggest,
        "Without a parsing string, suggest one for each kind of message, with the messages "
        "that it matches and the values that its outputs have");
    app.add_option("--name", outOptions.mNames,
                   "With --suggest or --edit, names for the outputs of the first suggestion that "
                   "has any: t,h,p")
        ->option_text("NAMES")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check([](const std::string& name) {
            return NSuggest::IsName(name) ? ""
                                          : '\'' + name +
                                                "' isn't a name: write letters, digits "
                                                "and _, and no digit first";
        });

    app.option_defaults()->group("Messages");
    app.add_option("-e,--eom", outLine.mEomText,
                   std::string("The end-of-message character: a character, ") + kEomForms +
                       ". The default is line feed. With 0, a message ends at a byte 00, at the "
                       "end of the file, and where a serial device pauses")
        ->option_text("CHAR");
    app.add_flag("-x,--hex", outLine.mHex,
                 "Read messages written as hexadecimal digits, one message per line. Bytes may be "
                 "written as AA 01, AA:01, AA-01, AA,01 or 0xAA 0x01. A byte 00 ends the message, "
                 "as in the host");
    app.add_option("--for", outLine.mDuration,
                   "End the run after TIME, such as 10s, 500ms, 5min or 2h")
        ->option_text("TIME");

    app.option_defaults()->group("Serial devices");
    app.add_flag("-s,--show", outLine.mShow,
                 "Without a parsing string, show what a device or a file contains: the bytes with "
                 "their times, and at the end how the messages seem to end");
    app.add_option("-b,--baud", outOptions.mReading.mLine.mBaud,
                   "Bits per second. The default is 9600")
        ->option_text("N")
        ->check([](const std::string& text) {
            const bool isRate = text.size() < 10 &&
                                text.find_first_not_of("0123456789") == text.npos &&
                                text.find_first_not_of('0') != text.npos;
            return isRate ? "" : '\'' + text + "' isn't a number of bits per second, such as 9600";
        });
    app.add_option("--line", outOptions.mReading.mLine.mFrame,
                   "Data bits (5 to 8), parity (N, E or O for none, even or odd) and stop bits (1 "
                   "or 2). The default is 8N1")
        ->option_text("BITS");

    app.option_defaults()->group("Output");
    app.add_flag("-m,--misses", outOptions.mMisses,
                 "For each message that doesn't match, show where it stopped and why");
    app.add_flag("-t,--trace", outOptions.mTrace,
                 "For each message that matches, show what each piece took");
    app.add_flag("-r,--rest", outOptions.mRest,
                 "For each message that matches, show what the parsing string left over");
    app.add_flag("-j,--json", outLine.mJson, "Print JSON, one object per line");
    app.add_flag("--csv", outLine.mCsv,
                 "Print comma-separated values, after a header line with the output names");
    app.add_flag("-c,--count", outLine.mCount, "Print only the number of messages that matched");

    app.option_defaults()->group("Other");
    app.add_option("--plugin", outLine.mPlugin,
                   "The plug-in module to run. The default is the one that comes with sift")
        ->option_text("FILE");
    app.set_help_flag("-h,--help", "Print this help and exit")->group("Other");
    app.set_version_flag("-V,--version", "sift " WORD_SIFTER_VERSION, "Print the version and exit")
        ->group("Other");

    app.add_flag("--man", outLine.mManual, "Print the manual page and exit");
}

[[noreturn]] void Refuse(const char* option, const std::string& text, const std::string& wanted)
{
    throw CLI::ValidationError(option, '\'' + text + "' isn't " + wanted);
}

// text: a number, with or without a decimal point, and a unit.
std::chrono::milliseconds DurationIn(const std::string& text)
{
    constexpr std::pair<std::string_view, double> kUnits[] = {
        {"ms", 1}, {"s", 1000}, {"min", 60'000}, {"h", 3'600'000}};
    constexpr double kLongest = 1e12;
    const std::size_t unit = std::min(text.find_first_not_of("0123456789."), text.size());
    double number = 0;
    std::istringstream stream(text.substr(0, unit));
    stream.imbue(std::locale::classic());
    if (unit != 0 && stream >> number && stream.peek() == std::istringstream::traits_type::eof()) {
        for (const auto& [name, milliseconds] : kUnits) {
            if (text.substr(unit) != name || number * milliseconds > kLongest) continue;
            return std::chrono::milliseconds(static_cast<std::int64_t>(number * milliseconds));
        }
    }
    Refuse("--for", text, "a time, which needs a unit: 10s, 1.5s, 500ms, 5min or 2h");
}

void FillReading(const CommandLine& line, bool hasDuration, ReadOptions& outReading)
{
    std::string& frame = outReading.mLine.mFrame;
    if (frame.size() == 3 && frame[1] >= 'a') frame[1] = static_cast<char>(frame[1] - 'a' + 'A');
    if (!IsFrame(frame))
        Refuse("--line", frame,
               "data bits (5 to 8), parity (N, E or O) and stop bits (1 or 2), such as 8N1");
    if (hasDuration) outReading.mDuration = DurationIn(line.mDuration);
}

[[noreturn]] void RefuseOption(const CLI::App& app, const std::string& argument)
{
    const std::string option = argument.substr(0, argument.find('='));
    NExplain::Words names;
    for (const CLI::Option* known : app.get_options()) {
        for (const std::string& name : known->get_lnames()) names.emplace_back(name);
    }
    const std::string name = option.substr(std::min(option.find_first_not_of('-'), option.size()));
    const std::string_view nearest = NExplain::Nearest(names, name);
    throw CLI::ValidationError(
        "there is no option " + option +
        (nearest.empty() ? "" : "; did you mean --" + std::string(nearest) + '?'));
}

void FillFiles(const CLI::App& app, const CommandLine& line, std::vector<std::string>& outFiles)
{
    if (app.count("FILE") != 0) outFiles.push_back(line.mFile);
    bool mayBeOption = true;
    for (const std::string& argument : app.remaining()) {
        if (mayBeOption && argument.size() > 1 && argument[0] == '-' && argument != "--")
            RefuseOption(app, argument);
        if (mayBeOption && argument == "--") {
            mayBeOption = false;
        } else {
            outFiles.push_back(argument);
        }
    }
}

void FillOptions(const CLI::App& app, const CommandLine& line, Options& outOptions)
{
    FillFiles(app, line, outOptions.mFiles);
    RefuseExclusions(app);
    if (app.count("--name") != 0 && !line.mSuggest && !outOptions.mEdit)
        throw CLI::ValidationError("--name", "needs --suggest or --edit");
    outOptions.mTask = line.mExplain   ? Task::kExplain
                       : line.mCheck   ? Task::kCheck
                       : line.mShow    ? Task::kShow
                       : line.mSuggest ? Task::kSuggest
                                       : Task::kMatch;
    outOptions.mFormat = line.mJson    ? Format::kJson
                         : line.mCsv   ? Format::kCsv
                         : line.mCount ? Format::kCount
                                       : Format::kText;
    const bool hasFile = !outOptions.mPatternFile.empty();
    if (hasFile) outOptions.mPattern = ReadWholeFile(outOptions.mPatternFile, outOptions.mEdit);
    if (!hasFile && !line.mShow && !line.mSuggest) {
        if (app.count("PATTERN") == 0 && !outOptions.mEdit) {
            throw CLI::ValidationError(
                "there is no parsing string: PATTERN or -f is required; --show FILE shows what "
                "comes, and --suggest FILE suggests a parsing string");
        }
        std::error_code ignored;
        const bool isInput = outOptions.mEdit && outOptions.mFiles.empty() &&
                             std::filesystem::exists(NSystem::PathOf(line.mOperand), ignored);
        if (isInput) {
            outOptions.mFiles.push_back(line.mOperand);
        } else {
            outOptions.mPattern = line.mOperand;
        }
    } else if (app.count("PATTERN") != 0) {
        outOptions.mFiles.insert(outOptions.mFiles.begin(), line.mOperand);
    }
    if (outOptions.mFiles.empty()) outOptions.mFiles.emplace_back("-");
    const auto eomChar = CharacterIn(line.mEomText);
    if (!eomChar) {
        Refuse("--eom", line.mEomText,
               std::string("a character: write the character itself, ") + kEomForms);
    }
    outOptions.mEomChar = line.mHex ? std::uint8_t{0} : *eomChar;
    outOptions.mFindsEom = app.count("--eom") == 0 && !line.mHex;
    outOptions.mInputForm = line.mHex ? InputForm::kHexLines : InputForm::kRaw;
    FillReading(line, app.count("--for") != 0, outOptions.mReading);
    // The loader would search for a name without a folder among the system's libraries.
    outOptions.mPlugin = line.mPlugin.empty()
                             ? NSystem::DefaultPluginPath()
                             : std::filesystem::absolute(NSystem::PathOf(line.mPlugin));
}

void ReportUsage(const CLI::ParseError& error)
{
    std::string text = error.what();
    if (error.get_name() == "ArgumentMismatch")
        text.replace(text.find(':'), text.npos, " needs an argument");
    std::cerr << "sift: " << text << "\nsift: for help, run sift --help\n";
}

}  // namespace

std::optional<Options> ParseOptions(std::vector<std::string> arguments, int& outExitStatus)
{
    Options options;
    CommandLine line;
    CLI::App app("", "sift");
    app.allow_windows_style_options(false);  // /name is a path there, too
    FormatHelp(app);
    DefineOptions(app, line, options);
    try {
        std::reverse(arguments.begin(), arguments.end());  // as parse takes them
        app.parse(arguments);
        if (line.mManual) {
            WriteManual(std::cout, app);
            outExitStatus = kExitMatched;
            return std::nullopt;
        }
        FillOptions(app, line, options);
    } catch (const CLI::ParseError& error) {
        outExitStatus = error.get_exit_code() == 0 ? app.exit(error) : kExitTrouble;
        if (outExitStatus != 0) ReportUsage(error);
        return std::nullopt;
    }
    return options;
}

}  // namespace NSift
