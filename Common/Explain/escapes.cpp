#include "escapes.h"

#include <algorithm>
#include <string_view>

#include "Common/Pattern/pattern_byteset_element.h"
#include "Common/Pattern/pattern_string_element.h"
#include "byte_text.h"

namespace NExplain {

using NPattern::Byte;
using NPattern::BytesetElement;
using NPattern::StringElement;

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

bool IsHexDigitAt(std::string_view text, std::size_t position)
{
    return position < text.size() && NPattern::IsHexDigit(static_cast<Byte>(text[position]));
}

// rest: of the piece, from the letter after the backslash on.
std::string InsteadOf(std::string_view rest)
{
    if (rest[0] == 'x' && IsHexDigitAt(rest, 1) && IsHexDigitAt(rest, 2)) {
        return "a byte is written as a piece of its own: {{" + std::string(rest.substr(1, 2)) +
               "}}";
    }
    for (const ForeignEscape& row : kForeignEscapes) {
        if (row.mLetter == rest[0]) return std::string(row.mInstead);
    }
    return "a backslash itself is written \\\\";
}

// The opening quote or bracket, or npos if the piece has no place for an escape.
std::size_t OpeningOf(const Piece& piece)
{
    if (ElementAs<StringElement>(piece) != nullptr) return piece.mSource.find_first_of("'\"");
    const auto* const set = ElementAs<BytesetElement>(piece);
    return set != nullptr && !set->IsInBraces() ? piece.mSource.find('[') : std::string::npos;
}

}  // namespace

std::string IdleBackslash(const Piece& piece)
{
    const std::string_view source = piece.mSource;
    std::size_t at = OpeningOf(piece);
    if (at == std::string::npos) return "";
    for (; (at = source.find('\\', at)) < source.size() - 1; at += 2) {
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
