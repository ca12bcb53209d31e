#include "result_printer.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace NSift {

namespace {

bool IsControl(char c)
{
    return static_cast<unsigned char>(c) < ' ' || c == '\x7F';
}

std::string Escaped(std::string_view text)
{
    constexpr std::string_view kHexDigits = "0123456789ABCDEF";
    std::string escaped;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        switch (c) {
            case '\n': escaped += "\\n"; break;
            case '\r': escaped += "\\r"; break;
            case '\t': escaped += "\\t"; break;
            default:
                if (IsControl(c)) {
                    escaped += {'\\', 'x', kHexDigits[byte / 16], kHexDigits[byte % 16]};
                } else {
                    escaped += c;
                }
        }
    }
    return escaped;
}

bool NeedsQuotes(std::string_view text)
{
    return text.empty() || std::any_of(text.begin(), text.end(), [](char c) {
               return IsControl(c) || c == ' ' || c == '"' || c == '\\';
           });
}

std::string Quoted(std::string_view text)
{
    if (!NeedsQuotes(text)) return std::string(text);
    std::string plain;
    for (const char c : text) {
        if (c == '"' || c == '\\') plain += '\\';
        plain += c;
    }
    return '"' + Escaped(plain) + '"';
}

std::string TextOf(const NStandIn::Value& value)
{
    if (value.mBits.mTag == NActor::kValueString) return Quoted(value.mText);
    if (value.mBits.mTag == NActor::kValueInteger) return std::to_string(value.Integer());
    char buffer[64];
    const auto result = std::to_chars(std::begin(buffer), std::end(buffer), value.Float());
    return {buffer, result.ptr};
}

// Where the fault lies in the parsing string: bytes from mStart on.
struct Place {
    std::size_t mStart;
    std::size_t mLength;
};

// An error at a token is told with the token's place. Every other one comes from the lexer, which
// tells a place one byte ahead of what it refused.
Place PlaceOf(const std::string& pattern, const NStandIn::Validation& error)
{
    const bool atToken = error.mMessage.compare(0, 16, "Syntax error at ") == 0;
    const int start = std::max(error.mStart + (atToken ? 0 : 1), 0);
    const int length = atToken ? std::max(error.mEnd - error.mStart, 1) : 1;
    return {std::min(static_cast<std::size_t>(start), pattern.size()),
            static_cast<std::size_t>(length)};
}

// As many columns as the text takes on a terminal that reads UTF-8.
std::size_t ColumnsOf(std::string_view text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

}  // namespace

void PrintValues(std::ostream& stream, const std::vector<NStandIn::Property>& outputs)
{
    const std::size_t first = outputs.size() > 1 ? 1 : 0;
    for (std::size_t i = first; i < outputs.size(); ++i) {
        stream << (i > first ? " " : "") << outputs[i].mName << '=' << TextOf(outputs[i].mValue);
    }
    stream << '\n';
}

void PrintPatternError(std::ostream& stream, const std::string& pattern,
                       const NStandIn::Validation& error)
{
    const Place place = PlaceOf(pattern, error);
    const std::string_view text = pattern;
    const std::size_t lineStart =
        place.mStart == 0 ? 0 : text.rfind('\n', place.mStart - 1) + 1;  // npos + 1 is 0
    const std::string_view line = text.substr(lineStart, text.find('\n', place.mStart) - lineStart);
    const std::size_t column = place.mStart - lineStart;

    const std::string before = Escaped(line.substr(0, column));
    const std::string marked = Escaped(line.substr(column, place.mLength));
    stream << error.mMessage << "\n  " << Escaped(line) << "\n  "
           << std::string(ColumnsOf(before), ' ')
           << std::string(std::max<std::size_t>(ColumnsOf(marked), 1), '^') << "\nat byte "
           << place.mStart << " of the parsing string\n";
}

}  // namespace NSift
