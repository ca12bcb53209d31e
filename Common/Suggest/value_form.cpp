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
// one case stands for all of it, a digit for all digits.
std::string SetOf(const Values& values)
{
    std::string set;
    const auto addRange = [&](char first, char last) {
        const auto begin = values.mMembers.begin();
        if (std::find(begin + first, begin + last + 1, true) == begin + last + 1) return;
        set += {first, '-', last};
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

// Numbers of one digit may get longer.
ValueForm HexForm(const Values& values)
{
    const bool isPadded = HasWidth(values) && values.mLongest > 1;
    const std::string width = isPadded ? std::to_string(values.mLongest) : "";
    return {values.mLongest <= kMostIntegerHexDigits ? "integer" : "string", width + 'x'};
}

ValueForm ClockForm(const Values& values, const Surroundings& around)
{
    const bool isConflict =
        around.mSpaceNeverFollows && around.mNextText && Has(values, *around.mNextText);
    if (!isConflict) return {"string", SetOf(values)};
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
    if (around.mNextSpace && !Has(values, *around.mNextSpace)) {
        return {"string", SetWithout(*around.mNextSpace), true};
    }
    if (around.mNextText && !Has(values, *around.mNextText)) {
        return {"string", SetWithout(*around.mNextText), true, true};
    }
    return {"string", "[^\\r\\n]", true, false, true};
}

ValueForm VisibleForm(const Values& values, const Surroundings& around)
{
    if (around.mIsLast || around.mSpaceFollows) return {"string", "chars"};
    if (around.mNextText && around.mSpaceNeverFollows && !Has(values, *around.mNextText)) {
        return {"string", SetWithout(*around.mNextText), true};
    }
    return {"string", SetOf(values)};
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
        case ValueKind::kInteger: return {"integer", "#"};  // longer numbers match too
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
