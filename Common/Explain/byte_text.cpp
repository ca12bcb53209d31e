#include "byte_text.h"

#include <algorithm>

#include "Common/Pattern/pattern_bytes.h"

namespace NExplain {

namespace {

unsigned char ByteAt(std::string_view text, std::size_t position)
{
    return static_cast<unsigned char>(text[position]);
}

// Well-formed sequences of two bytes and more, in the order of their lead bytes.
struct Utf8Range {
    unsigned char mLastLead;
    unsigned char mLowestSecond;  // bytes after the second are 80 to BF
    unsigned char mHighestSecond;
    std::size_t mLength;
};

constexpr Utf8Range kUtf8Ranges[] = {
    {0xDF, 0x80, 0xBF, 2}, {0xE0, 0xA0, 0xBF, 3}, {0xEC, 0x80, 0xBF, 3}, {0xED, 0x80, 0x9F, 3},
    {0xEF, 0x80, 0xBF, 3}, {0xF0, 0x90, 0xBF, 4}, {0xF3, 0x80, 0xBF, 4}, {0xF4, 0x80, 0x8F, 4},
};
constexpr unsigned char kFirstLead = 0xC2;

// character: one UTF-8 character. U+0080 to U+009F are control characters too.
bool IsControl(std::string_view character)
{
    const unsigned char first = ByteAt(character, 0);
    return first < ' ' || first == 0x7F || (first == 0xC2 && ByteAt(character, 1) < 0xA0);
}

bool NeedsQuotes(std::string_view text)
{
    return text.empty() || IsBinary(text) ||
           text.find_first_of(" \t\r\n\"\\") != std::string_view::npos;
}

// Puts a backslash before each backslash and each quote of this kind.
std::string WithBackslashes(std::string_view text, char quote)
{
    std::string plain;
    for (const char c : text) {
        if (c == quote || c == '\\') plain += '\\';
        plain += c;
    }
    return plain;
}

}  // namespace

std::size_t Utf8Length(std::string_view text, std::size_t position)
{
    const unsigned char lead = ByteAt(text, position);
    if (lead < 0x80) return 1;
    if (lead < kFirstLead) return 0;
    for (const Utf8Range& range : kUtf8Ranges) {
        if (lead > range.mLastLead) continue;
        if (text.size() - position < range.mLength) return 0;
        const unsigned char second = ByteAt(text, position + 1);
        if (second < range.mLowestSecond || second > range.mHighestSecond) return 0;
        for (std::size_t k = 2; k < range.mLength; ++k) {
            if ((ByteAt(text, position + k) & 0xC0) != 0x80) return 0;
        }
        return range.mLength;
    }
    return 0;
}

bool IsUtf8(std::string_view text)
{
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t length = Utf8Length(text, position);
        if (length == 0) return false;
        position += length;
    }
    return true;
}

bool IsBinary(std::string_view text)
{
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t length = Utf8Length(text, position);
        if (length == 0) return true;
        const std::string_view character = text.substr(position, length);
        const bool isOfLine = character == "\t" || character == "\r" || character == "\n";
        if (IsControl(character) && !isOfLine) return true;
        position += length;
    }
    return false;
}

std::string Escaped(std::string_view text)
{
    std::string escaped;
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t length = Utf8Length(text, position);
        const std::string_view character = text.substr(position, std::max<std::size_t>(length, 1));
        position += character.size();
        if (length != 0 && !IsControl(character)) {
            escaped += character;
        } else if (character == "\n") {
            escaped += "\\n";
        } else if (character == "\r") {
            escaped += "\\r";
        } else if (character == "\t") {
            escaped += "\\t";
        } else {
            for (const char c : character) escaped += "\\x" + HexOf({&c, 1});
        }
    }
    return escaped;
}

std::string AlwaysQuoted(std::string_view text)
{
    const bool isSingle = text.find('"') != text.npos && text.find('\'') == text.npos;
    const char quote = isSingle ? '\'' : '"';
    return quote + Escaped(WithBackslashes(text, quote)) + quote;
}

std::string Quoted(std::string_view text)
{
    return NeedsQuotes(text) ? '"' + Escaped(WithBackslashes(text, '"')) + '"' : std::string(text);
}

std::string HexOf(std::string_view bytes)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string hex;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        hex += {kDigits[byte / 16], kDigits[byte % 16]};
    }
    return hex;
}

std::size_t ColumnsOf(std::string_view text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

std::string InQuotes(std::string_view text)
{
    return '\'' + std::string(text) + '\'';
}

std::string NameOfByte(unsigned char byte)
{
    switch (byte) {
        case ' ': return "space";
        case '\t': return "tab";
        case '\n': return "line feed";
        case '\r': return "carriage return";
        default: break;
    }
    const auto c = static_cast<char>(byte);
    return NPattern::IsPrint(byte) ? InQuotes({&c, 1}) : "byte " + HexOf({&c, 1});
}

std::string CountOf(std::uint64_t count, const std::string& unit)
{
    return std::to_string(count) + ' ' + unit + (count == 1 ? "" : "s");
}

}  // namespace NExplain
