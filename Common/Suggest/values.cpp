#include "values.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>

#include "Common/Pattern/pattern_bytes.h"
#include "message_token.h"

namespace NSuggest {

using NPattern::Byte;
using NPattern::IsDigit;

namespace {

// The most digits that a double holds exactly.
constexpr std::size_t kMostExactDigits = 15;

template <typename Predicate>
bool AllOf(const Column& column, Predicate predicate)
{
    return std::all_of(column.begin(), column.end(), predicate);
}

template <typename Predicate>
bool AnyOf(const Column& column, Predicate predicate)
{
    return std::any_of(column.begin(), column.end(), predicate);
}

bool IsOf(const Column& column, TokenKind kind)
{
    return AllOf(column, [kind](std::string_view value) { return IsToken(value, kind); });
}

std::string_view WithoutSign(std::string_view number)
{
    if (number.front() == '+' || number.front() == '-') number.remove_prefix(1);
    return number;
}

bool HasPoint(std::string_view number)
{
    return number.find('.') != std::string_view::npos;
}

bool StartsWithZero(std::string_view number)
{
    number = WithoutSign(number);
    return number.size() > 1 && number.front() == '0';
}

bool FitsInteger(std::string_view number)
{
    constexpr std::int64_t kLargest = std::numeric_limits<std::int32_t>::max();
    const std::int64_t largest = number.front() == '-' ? kLargest + 1 : kLargest;
    std::int64_t value = 0;
    for (const char c : WithoutSign(number)) {
        value = value * 10 + (c - '0');
        if (value > largest) return false;
    }
    return true;
}

// True for numbers of so many digits that zeros in front make them codes: 0012345.
bool AreCodes(const Column& column)
{
    constexpr std::size_t kMostPadded = 6;
    const std::size_t width = column.front().size();
    return width > kMostPadded && AnyOf(column, StartsWithZero) &&
           AllOf(column, [width](std::string_view v) {
               return v.size() == width && IsDigit(static_cast<Byte>(v.front()));
           });
}

// True for hours, minutes, seconds and a fraction: 001530.00.
bool IsPlainTime(std::string_view number)
{
    constexpr std::size_t kDigits = 6;
    return number.find('.') == kDigits && IsDigit(static_cast<Byte>(number.front())) &&
           number < "24" && number[2] < '6' && number[4] < '6';
}

ValueKind KindOfNumbers(const Column& column)
{
    const bool isWhole = !AnyOf(column, HasPoint);
    if (isWhole && AreCodes(column)) return ValueKind::kDigits;
    if (AnyOf(column, StartsWithZero) && AllOf(column, IsPlainTime)) return ValueKind::kTime;
    if (isWhole && AllOf(column, FitsInteger)) return ValueKind::kInteger;
    const auto isExact = [](std::string_view number) {
        return WithoutSign(number).size() <= kMostExactDigits;
    };
    const bool isNumber = AllOf(column, isExact) && !AnyOf(column, StartsWithZero);
    return isNumber || !isWhole ? ValueKind::kFloat : ValueKind::kDigits;
}

// A1 and B2 are a letter and a number, and 123D and 45D numbers with a unit; 5E and F0 are
// hexadecimal.
bool HaveSameLetters(const Column& column)
{
    const auto lettersOf = [](std::string_view value) {
        std::string letters;
        for (const char c : value) {
            const char kind = IsDigit(static_cast<Byte>(c)) ? '0' : 'a';
            if (letters.empty() || letters.back() != kind) letters += kind;
        }
        return letters;
    };
    const std::string letters = lettersOf(column.front());
    return AllOf(column, [&](std::string_view value) { return lettersOf(value) == letters; });
}

// Words and decimal numbers may be hexadecimal too. There are digits and letters among these
// numbers, and all have the same length or one is mixed.
bool AreHex(const Column& column)
{
    if (!AreHexDigits(column)) return false;
    const std::size_t width = column.front().size();
    const bool hasWidth =
        width > 1 && AllOf(column, [width](std::string_view v) { return v.size() == width; });
    const auto hasKind = [&column](TokenKind kind) {
        return AnyOf(column, [kind](std::string_view value) { return IsToken(value, kind); });
    };
    return !HaveSameLetters(column) && (hasWidth || hasKind(TokenKind::kMixed));
}

ValueKind KindOf(const Column& column, const std::array<bool, 256>& members)
{
    if (IsOf(column, TokenKind::kNumber)) return KindOfNumbers(column);
    const auto isReal = [](std::string_view value) {
        return IsToken(value, TokenKind::kNumber) || IsToken(value, TokenKind::kExponent);
    };
    if (AllOf(column, isReal)) return ValueKind::kExponent;
    if (AreHex(column)) return ValueKind::kHex;
    if (IsOf(column, TokenKind::kDate)) return ValueKind::kDate;
    if (IsOf(column, TokenKind::kTime)) return ValueKind::kTime;
    if (IsOf(column, TokenKind::kDotted)) return ValueKind::kDotted;
    if (AllOf(column, IsMonth)) return ValueKind::kMonth;
    if (AllOf(column, IsWeekday)) return ValueKind::kWeekday;
    const auto areAll = [&members](auto predicate) {
        for (unsigned b = 0; b < members.size(); ++b) {
            if (members[b] && !predicate(static_cast<Byte>(b))) return false;
        }
        return true;
    };
    if (areAll(NPattern::IsAlpha)) return ValueKind::kLetters;
    const bool isVisible =
        areAll([](Byte b) { return NPattern::IsPrint(b) && !NPattern::IsSpace(b); });
    return isVisible ? ValueKind::kVisible : ValueKind::kText;
}

// True if the same text in all messages is still a value.
bool IsValue(std::string_view text, Sameness sameness)
{
    const MessageTokens tokens = Tokenize(text);
    if (tokens.size() != 1) return false;
    const TokenKind kind = tokens[0].mKind;
    const bool isNumber = kind == TokenKind::kNumber || kind == TokenKind::kExponent;
    return IsClock(kind) || IsMonth(text) || IsWeekday(text) ||
           (sameness == Sameness::kValue && isNumber);
}

}  // namespace

bool AreEqual(const Column& column)
{
    return AllOf(column, [&column](std::string_view value) { return value == column.front(); });
}

bool AreHexDigits(const Column& column)
{
    return AllOf(column, [](std::string_view value) {
        return std::all_of(value.begin(), value.end(),
                           [](char c) { return NPattern::IsHexDigit(static_cast<Byte>(c)); });
    });
}

bool IsTyped(ValueKind kind)
{
    return kind > ValueKind::kFixed && kind < ValueKind::kLetters;
}

bool IsOfClock(ValueKind kind)
{
    return kind >= ValueKind::kDate && kind <= ValueKind::kWeekday;
}

Values ValuesOf(const Column& column, Sameness sameness)
{
    Values values;
    values.mSample = column.front();
    values.mMembers.fill(false);
    const auto [shortest, longest] = std::minmax_element(
        column.begin(), column.end(),
        [](std::string_view a, std::string_view b) { return a.size() < b.size(); });
    values.mShortest = shortest->size();
    values.mLongest = longest->size();
    for (const std::string_view value : column) {
        for (const char c : value) values.mMembers[static_cast<Byte>(c)] = true;
    }
    if (!AreEqual(column) || IsValue(column.front(), sameness)) {
        values.mKind = KindOf(column, values.mMembers);
    }
    return values;
}

}  // namespace NSuggest
