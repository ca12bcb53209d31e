#include "options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <fstream>
#include <iostream>
#include <iterator>

#include "plugin_path.h"

namespace NSift {

namespace {

constexpr char kDescription[] =
    "Runs the Word Sifter plug-in over messages: each one that matches the parsing string gives a "
    "line of its captured values.";
constexpr char kFooter[] =
    "Exit status: 0 if something matched, 1 if nothing did, 2 for a mistake on the command line, a "
    "bad parsing string or a file that can't be read.";

std::optional<std::uint8_t> NumberIn(const std::string& text, int base)
{
    std::uint8_t value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc() || rest != text.data() + text.size()) return std::nullopt;
    return value;
}

// One character, an escape, or a number; digits are always a number.
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

std::string ReadWholeFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file.is_open() || file.bad()) throw CLI::ValidationError("-f", "can't read " + path);
    return text;
}

}  // namespace

std::optional<Options> ParseOptions(int argc, char** argv, int& outExitStatus)
{
    Options options;
    std::string operand;
    std::string patternFile;
    std::string eomText = "\\n";

    CLI::App app(kDescription, "sift");
    app.footer(kFooter);
    app.add_option("PATTERN", operand, "The parsing string; with -f the first file to read")
        ->option_text(" ");
    app.add_option("FILE", options.mFiles, "Files to read; standard input without any, and for -")
        ->option_text(" ");
    app.add_option("-f,--file", patternFile, "Take the parsing string from FILE")
        ->option_text("FILE");
    app.add_option("-e,--eom", eomText,
                   "The end-of-message character: a character, an escape (\\n \\r \\t \\0 \\\\ "
                   "\\xNN) or a number 0 to 255; line feed if not given, 0 for the end of the text")
        ->option_text("CHAR");
    app.add_option("--plugin", options.mPlugin,
                   "The plug-in module to run; the one beside this program if not given")
        ->option_text("PATH");
    try {
        app.parse(argc, argv);
        if (patternFile.empty()) {
            if (app.count("PATTERN") == 0) throw CLI::RequiredError("PATTERN or -f");
            options.mPattern = operand;
        } else {
            options.mPattern = ReadWholeFile(patternFile);
            if (app.count("PATTERN") != 0) options.mFiles.insert(options.mFiles.begin(), operand);
        }
        const auto eomChar = CharacterIn(eomText);
        if (!eomChar) throw CLI::ValidationError("--eom", "'" + eomText + "' is no character");
        options.mEomChar = *eomChar;
        if (options.mPlugin.empty()) options.mPlugin = DefaultPluginPath();
    } catch (const CLI::ParseError& error) {
        outExitStatus = app.exit(error) == 0 ? kExitMatched : kExitTrouble;
        return std::nullopt;
    }
    return options;
}

}  // namespace NSift
