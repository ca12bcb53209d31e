#include "escapes.h"

#include <algorithm>
#include <string_view>

#include "byte_text.h"

namespace NExplain {

using NPattern::Byte;

namespace {

// What a letter after a backslash means elsewhere, and how to write it here.
struct ForeignEscape {
    char mLetter;
    std::string_view mInstead;
};

constexpr ForeignEscape kForeignEscapes[] = {
    {'d', "a digit is [[0-9]], and # reads a number"},
    {'w', "letters, digits and _ are [A-Za-z0-9_]"},
    {'s', "white space between text pieces is skipped, and [ \\t] takes it"},
    {'a', "the byte is written as a piece of its own: {{07}}"},
    {'b', "the byte is written as a piece of its own: {{08}}"},
    {'e', "the byte is written as a piece of its own: {{1B}}"},
    {'f', "the byte is written as a piece of its own: {{0C}}"},
    {'v', "the byte is written as a piece of its own: {{0B}}"},
    {'0', "a byte 00 cannot be read, because the host passes text only up to it"},
};

// rest: of the piece, from the letter after the backslash on; ends with a quote or bracket.
std::string InsteadOf(std::string_view rest)
{
    const auto isHexDigit = [rest](std::size_t position) {
        return NPattern::IsHexDigit(static_cast<Byte>(rest[position]));
    };
    if (rest[0] == 'x' && isHexDigit(1) && isHexDigit(2)) {
        return "a byte is written as a piece of its own: {{" + std::string(rest.substr(1, 2)) +
               "}}";
    }
    for (const ForeignEscape& row : kForeignEscapes) {
        if (row.mLetter == rest[0]) return std::string(row.mInstead);
    }
    return "a backslash itself is written \\\\";
}

}  // namespace

// A piece has a backslash only between quotes or brackets, and never as its last character.
std::string IdleBackslash(const Piece& piece)
{
    const std::string_view source = piece.mSource;
    for (std::size_t at = source.find('\\'); at != source.npos; at = source.find('\\', at + 2)) {
        const auto next = static_cast<Byte>(source[at + 1]);
        if (!NPattern::IsAlnum(next) || NPattern::TranslateEscape(next) != next) continue;
        return "the backslash before " + NameOfByte(next) + " means nothing; " +
               InsteadOf(source.substr(at + 1));
    }
    return "";
}

std::string InSet(const std::string& member)
{
    const bool isSign = std::string_view("]{}\\^-").find(member) != std::string_view::npos;
    return isSign ? '\\' + member : member;
}

}  // namespace NExplain
