#include "value_form.h"

#include <algorithm>
#include <string_view>

#include "Common/Explain/byte_text.h"
#include "Common/Pattern/pattern_bytes.h"

namespace NSuggest {

using NPattern::Byte;

namespace {

constexpr std::size_t kMostIntegerHexDigits = 7;  // of a number that fits 31 bits whatever it is

bool Has(const Values& values, char c)
{
    return values.mMembers[static_cast<Byte>(c)];
}

bool HasWidth(const Values& values)
{
    return values.mShortest == values.mLongest;
}

// Returns a character as it is written between brackets.
std::string InBrackets(char c)
{
    constexpr std::string_view kEscaped = "]{}\\^-";
    if (kEscaped.find(c) != std::string_view::npos) return std::string("\\") + c;
    return NExplain::Escaped({&c, 1});
}

std::string SetWithout(char c)
{
    const auto b = static_cast<Byte>(c);
    if (!NPattern::IsPrint(b) && !NPattern::IsSpace(b))
        return "{^" + NExplain::HexOf({&c, 1}) + '}';
    return "[^" + InBrackets(c) + ']';
}

// Returns a set of the letters, the digits and the other characters of the values. A letter of
// one case stands for all of it, a digit for all digits, unless excluded is among them.
std::string SetOf(const Values& values, std::optional<char> excluded)
{
    std::string set;
    const auto addRange = [&](char first, char last) {
        const auto isMember = [&](char c) { return Has(values, c); };
        std::string members;
        for (char c = first; c <= last; ++c) {
            if (isMember(c)) members += c;
        }
        const bool isExcluded = excluded && *excluded >= first && *excluded <= last;
        if (members.empty()) return;
        set += isExcluded ? members : std::string{first, '-', last};
    };
    addRange('A', 'Z');
    addRange('a', 'z');
    addRange('0', '9');
    for (unsigned b = '!'; b <= '~'; ++b) {
        const char c = static_cast<char>(b);
        if (values.mMembers[b] && !NPattern::IsAlnum(static_cast<Byte>(b)) && c != '-') {
            set += InBrackets(c);
        }
    }
    return (Has(values, '-') ? "[-" : "[") + set + ']';
}

// Without a width, numbers of more digits than were seen match too.
ValueForm IntegerForm(const Values& values, const Surroundings& around)
{
    const bool isFixed = HasWidth(values) && !Has(values, '-') && !Has(values, '+');
    const bool needsWidth = isFixed && around.mDigitFollows;
    return {"integer", (needsWidth ? std::to_string(values.mShortest) : "") + '#'};
}

ValueForm HexForm(const Values& values)
{
    const std::string width = HasWidth(values) ? std::to_string(values.mShortest) : "";
    return {values.mLongest <= kMostIntegerHexDigits ? "integer" : "string", width + 'x'};
}

ValueForm ClockForm(const Values& values, const Surroundings& around)
{
    const bool isConflict =
        around.mSpaceNeverFollows && around.mNextText &&
        (Has(values, *around.mNextText) || NPattern::IsDigit(static_cast<Byte>(*around.mNextText)));
    if (!isConflict) return {"string", SetOf(values, std::nullopt)};
    std::string text(values.mSample);
    std::replace_if(
        text.begin(), text.end(), [](char c) { return NPattern::IsDigit(static_cast<Byte>(c)); },
        '?');
    return {"string", '\'' + text + '\''};
}

ValueForm RealForm(const Values& values)
{
    std::string letters;
    for (const char c : {'E', 'e'}) {
        if (Has(values, c)) letters += c;
    }
    return {"float", "[-+.0-9" + letters + ']'};
}

ValueForm TextForm(const Values& values, const Surroundings& around)
{
    if (around.mIsLast) return {"string", "[^\\r\\n]", true, false, true};
    const bool isNext = around.mNextText && !Has(values, *around.mNextText);
    if (isNext && around.mSpaceNeverFollows) return {"string", SetWithout(*around.mNextText), true};
    if (around.mNextSpace && !Has(values, *around.mNextSpace)) {
        return {"string", SetWithout(*around.mNextSpace), true};
    }
    if (isNext) return {"string", SetWithout(*around.mNextText), true, true};
    return {"string", "[^\\r\\n]", true, false, true};
}

ValueForm VisibleForm(const Values& values, const Surroundings& around)
{
    if (around.mIsLast || around.mSpaceFollows) return {"string", "chars"};
    if (around.mNextText && around.mSpaceNeverFollows && !Has(values, *around.mNextText)) {
        return {"string", SetWithout(*around.mNextText), true};
    }
    return {"string", SetOf(values, around.mNextText)};
}

// True for a checksum, and after 0x, even if the digits seen have no letter among them.
bool IsHex(const Values& values, const Surroundings& around)
{
    const std::string_view before = around.mTextBefore;
    const bool isChecksum =
        around.mIsLast && values.mLongest == 2 && HasWidth(values) && before.ends_with('*');
    for (unsigned b = 0; b < values.mMembers.size(); ++b) {
        if (values.mMembers[b] && !NPattern::IsHexDigit(static_cast<Byte>(b))) return false;
    }
    return isChecksum || before.ends_with("0x") || before.ends_with("0X");
}

}  // namespace

ValueForm FormOf(const Values& values, const Surroundings& around)
{
    if (IsHex(values, around)) return HexForm(values);
    switch (values.mKind) {
        case ValueKind::kInteger: return IntegerForm(values, around);
        case ValueKind::kFloat: return {"float", ".#"};
        case ValueKind::kExponent: return RealForm(values);
        case ValueKind::kHex: return HexForm(values);
        case ValueKind::kDigits: return {"string", "#"};
        case ValueKind::kDate:
        case ValueKind::kTime:
        case ValueKind::kDotted: return ClockForm(values, around);
        case ValueKind::kMonth:
        case ValueKind::kWeekday:
        case ValueKind::kLetters: return {"string", "letters"};
        case ValueKind::kVisible: return VisibleForm(values, around);
        case ValueKind::kFixed:
        case ValueKind::kText: break;
    }
    return TextForm(values, around);
}

}  // namespace NSuggest
