#include "tools/manual.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <string_view>

namespace NSift {

namespace {

constexpr char kDescription[] =
    "Runs the Word Sifter plug-in over messages. For each message that matches the parsing string, "
    "sift prints a line with the captured values.";

struct Section {
    const char* mTitle;
    const char* mText;  // paragraphs, with an empty line between; indented ones aren't wrapped
};

constexpr Section kSections[] = {
    {"Exit status",
     "0 if a message matched, 1 if no message matched. 2 if the command line is wrong, the parsing "
     "string doesn't compile, a file can't be read or written, a device was unplugged, memory ran "
     "out, the plug-in reported a failed check, or you gave up an edit. --check, --explain, and "
     "--edit without messages exit with 0 if the parsing "
     "string compiles, --show if there were bytes, and --suggest if there is a suggestion. Ctrl-C, "
     "SIGTERM and SIGHUP end a run properly, with 130, 143 and 129; a second one ends it at once."},
    {"Warnings",
     "sift warns on standard error, once for each piece, if a value is wrong: an integer that was "
     "too large, a number whose first digits or sign the piece before it took, a number that goes "
     "on "
     "after what was taken (23 of 23.5), a sign without digits, or a number made of raw bytes. "
     "--trace shows it for each message. --check, --explain and a run at a terminal also warn of "
     "what is most likely "
     "not meant in the parsing string, such as a piece that never matches. Warnings don't change "
     "the exit status."},
    {"Suggestions",
     "--suggest finds how messages end, unless -e or --hex is given, and the kinds of messages "
     "that "
     "one parsing string can match each. What is the same in all messages of a kind becomes text, "
     "what varies is captured. Each parsing string is run over all messages before it is printed. "
     "Of a pipe, the first 16 MiB are used. A serial device is read for the time of --for, "
     "otherwise for 200 messages; its first message is left out because it may not be complete.\n\n"
     "  sift --suggest captured.txt\n"
     "  sift --suggest --name t,h --for 10s --baud 9600 /dev/ttyUSB0\n"
     "  sift --edit -f new.pattern captured.txt"},
    {"Serial devices",
     "A file that is a terminal device, such as /dev/ttyUSB0 or COM3, is set up so that every byte "
     "arrives as it is sent: raw, without echo and flow control, and only for sift. Its settings "
     "are restored at the end. A byte with a wrong parity becomes 00. To connect a new device, "
     "look at it first:\n\n"
     "  sift --show --baud 9600 /dev/ttyUSB0\n"
     "  sift -e 13 -m \"'W' w:float=.# 'kg'\" /dev/ttyUSB0\n\n"
     "A message that isn't complete when the run ends is not matched."},
    {"Marks",
     "--trace and --misses print a line of marks below the message. A digit is the last digit of "
     "the number of the piece that took the character above it. A - marks white space that was "
     "skipped. A ^ marks the place where the match stopped. A message that isn't plain text is "
     "shown in hexadecimal."},
    {"JSON",
     "Each line is one object. Its member \"type\" determines its other members:\n\n"
     "  match    message (its number), values (an object, by output name);\n"
     "           with --rest also rest; with --trace also text, steps, and cautions\n"
     "           if a value is wrong\n"
     "  caution  piece, caution (why it is most likely not what you want); message,\n"
     "           if it is about a value: the first of each piece\n"
     "  miss     with --misses: message, text, verdict, stopped_at, piece,\n"
     "           source, wanted, found, hints, steps; with several files\n"
     "           also file and line\n"
     "  error    error; for a parsing string also start, length, hints, needs\n"
     "  output   with --check: name, value (string, float, integer), id\n"
     "  suggestion\n"
     "           with --suggest: pattern, messages, matched, notes, and outputs:\n"
     "           name, value, least and greatest of a number, shortest and longest\n"
     "           of a string and, if they are few, its texts\n"
     "  summary  messages, matched, missed; with --suggest also eom_char, headings,\n"
     "           blank (messages of white space), kinds_left_out, and an example\n"
     "           without a match; eom_char is null if none was found; the last line\n\n"
     "A string that isn't UTF-8 becomes an object with all its bytes: {\"hex\": \"C328\"}. An "
     "infinite float becomes the string \"inf\" or \"-inf\". Positions count bytes from 0. "
     "Messages and pieces count from 1. A step whose piece is null is white space that was "
     "skipped. An output whose name is empty or not unique has its id as name, as in the header of "
     "--csv."},
    {"Environment",
     "VISUAL, EDITOR: the editor that --edit starts. NO_COLOR: if it isn't empty, sift prints no "
     "colors. It prints colors only to a terminal."},
    {"Examples",
     "  printf 'T=23.5 H=41\\n' | sift \"'T=' t:float=.# 'H=' h:integer=#\"\n"
     "  sift --explain -f scale.pattern\n"
     "  sift --misses -f scale.pattern captured.txt\n"
     "  sift --hex \"{{AA}} (level=0-11, mode=12-15)\" packets.hex"},
};

// Escapes text for man: no line is read as a request, and a hyphen stays a hyphen.
std::string Roff(std::string_view text)
{
    std::string roff;
    bool isLineStart = true;
    for (const char c : text) {
        if (isLineStart && (c == '.' || c == '\'')) roff += "\\&";
        if (c == '\\') {
            roff += "\\e";
        } else if (c == '-') {
            roff += "\\-";
        } else {
            roff += c;
        }
        isLineStart = c == '\n';
    }
    return roff;
}

std::string UpperCase(std::string text)
{
    for (char& c : text) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return text;
}

// Fills paragraphs, except those that start with a space.
void WriteParagraphs(std::ostream& stream, std::string_view text)
{
    while (!text.empty()) {
        const std::size_t end = text.find("\n\n");
        const std::string_view paragraph = text.substr(0, end);
        const bool isFixed = paragraph.front() == ' ';
        stream << (isFixed ? ".PP\n.nf\n" : ".PP\n") << Roff(paragraph) << '\n'
               << (isFixed ? ".fi\n" : "");
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 2);
    }
}

void WriteOption(std::ostream& stream, const CLI::Option& option)
{
    std::string names;
    for (const std::string& name : option.get_snames()) names += ", -" + name;
    for (const std::string& name : option.get_lnames()) names += ", --" + name;
    stream << ".TP\n\\fB" << Roff(names.substr(2)) << "\\fR";
    if (!option.get_option_text().empty())
        stream << " \\fI" << Roff(option.get_option_text()) << "\\fR";
    stream << '\n' << Roff(option.get_description()) << '\n';
}

// Wraps each paragraph to lines of at most width columns.
std::string Wrapped(std::string_view text, std::size_t width)
{
    std::string wrapped;
    std::size_t column = 0;
    bool isFixed = true;
    for (std::size_t start = 0; start < text.size();) {
        if (column == 0) isFixed = text[start] == ' ';
        if (text[start] == '\n') {
            wrapped += '\n';
            column = 0;
            ++start;
            continue;
        }
        const std::size_t end =
            std::min(text.find_first_of(isFixed ? "\n" : " \n", start), text.size());
        if (column != 0 && column + 1 + end - start > width) {
            wrapped += '\n';
            column = 0;
        } else if (column != 0) {
            wrapped += ' ';
            ++column;
        }
        wrapped += text.substr(start, end - start);
        column += end - start;
        start = end < text.size() && text[end] == ' ' ? end + 1 : end;
    }
    return wrapped;
}

constexpr std::size_t kWidth = 79;
constexpr std::size_t kOptionColumn = 20;

class HelpFormatter final : public CLI::Formatter {
  public:
    HelpFormatter() { column_width(kOptionColumn); }
    std::string make_option_desc(const CLI::Option* option) const override
    {
        return Wrapped(option->get_description(), kWidth - kOptionColumn);
    }
};

}  // namespace

void FormatHelp(CLI::App& app)
{
    std::string footer;
    for (const Section& section : kSections) {
        footer += (footer.empty() ? "" : "\n\n") + std::string(section.mTitle) + ":\n" +
                  Wrapped(section.mText, kWidth);
    }
    app.description(Wrapped(kDescription, kWidth));
    app.footer(footer);
    app.formatter(std::make_shared<HelpFormatter>());
}

void WriteManual(std::ostream& stream, const CLI::App& app)
{
    stream
        << ".TH SIFT 1 \"\" \"Word Sifter " WORD_SIFTER_VERSION
           "\"\n.SH NAME\n"
           "sift \\- run the Word Sifter plug\\-in over messages\n.SH SYNOPSIS\n\\fBsift\\fR "
           "[\\fIoptions\\fR] \\fIPATTERN\\fR "
           "[\\fIFILE\\fR ...]\n.br\n\\fBsift\\fR [\\fIoptions\\fR] \\fB\\-f\\fR \\fIPATTERN-FILE"
           "\\fR [\\fIFILE\\fR ...]\n.br\n\\fBsift\\fR [\\fIoptions\\fR] \\fB\\-\\-show"
           "\\fR [\\fIFILE\\fR ...]\n.br\n\\fBsift\\fR [\\fIoptions\\fR] \\fB\\-\\-suggest"
           "\\fR [\\fIFILE\\fR ...]\n.br\n\\fBsift\\fR [\\fIoptions\\fR] \\fB\\-\\-edit\\fR "
           "[\\fB\\-f\\fR \\fIPATTERN-FILE\\fR] [\\fIFILE\\fR ...]\n.SH DESCRIPTION\n"
        << Roff(kDescription)
        << " The first operand is the parsing string, unless \\-f names a file that contains it. "
           "If there are no input files, or if a file is \\-, sift reads standard input.\n"
           ".SH OPTIONS\n";
    for (const CLI::Option* option : app.get_options()) {
        if (!option->get_positional() && !option->get_group().empty()) WriteOption(stream, *option);
    }
    for (const Section& section : kSections) {
        stream << ".SH " << UpperCase(section.mTitle) << '\n';
        WriteParagraphs(stream, section.mText);
    }
}

}  // namespace NSift
