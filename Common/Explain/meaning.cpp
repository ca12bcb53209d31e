#include "meaning.h"

#include <algorithm>

#include "Common/Pattern/pattern_elements.h"
#include "byte_text.h"

namespace NExplain {

using NPattern::BitfieldElement;
using NPattern::Byte;
using NPattern::BytesetElement;
using NPattern::Element;
using NPattern::Parameter;

namespace {

// "41 to 5A, 61": the bytes that are members, or those that are not.
std::string ListOf(const BytesetElement& set, bool members)
{
    const auto nameOf = [&set](unsigned b) {
        const char byte = static_cast<char>(b);
        return set.IsInBraces() ? HexOf({&byte, 1}) : NameOfByte(static_cast<Byte>(b));
    };
    const auto isListed = [&set, members](unsigned b) {
        return b < 256 && set.Has(static_cast<Byte>(b)) == members;
    };
    std::string list;
    for (unsigned b = 0; b < 256; ++b) {
        if (!isListed(b)) continue;
        unsigned last = b;
        while (isListed(last + 1)) ++last;
        if (!list.empty()) list += ", ";
        list += nameOf(b);
        if (last > b) list += (last == b + 1 ? ", " : " to ") + nameOf(last);
        b = last;
    }
    return list;
}

std::string TakesBracketedSet(const BytesetElement& set)
{
    const bool isSingle = set.Length() == 1;
    const std::string unit = set.IsInBraces() ? "byte" : "character";
    const std::string amount = isSingle ? "exactly one" : "one or more";
    const std::string units = unit + (isSingle ? "" : "s");
    unsigned count = 0;
    for (unsigned b = 0; b < 256; ++b) count += set.Has(static_cast<Byte>(b)) ? 1 : 0;
    if (count == 256) return amount + ' ' + units + " of any value";
    if (count == 0) return "nothing: the set excludes every byte";
    if (count == 1) {
        return "the " + unit + ' ' + ListOf(set, true) + (isSingle ? ", once" : ", once or more");
    }
    // A set that leaves out little is described by that.
    if (count > 128) return amount + ' ' + units + " except " + ListOf(set, false);
    return amount + " of the " + unit + "s " + ListOf(set, true);
}

std::string AmountOf(const BytesetElement& set, const std::string& unit)
{
    const auto count = static_cast<std::size_t>(set.Length());
    return count == 0 ? "one or more " + unit + 's' : "exactly " + CountOf(count, unit);
}

std::string AtMost(std::int32_t digits)
{
    return digits == 0 ? "" : ", at most " + CountOf(static_cast<std::size_t>(digits), "digit");
}

std::string Takes(const NPattern::StringElement& text)
{
    std::string shown = text.MatchText();
    const auto wildcard = static_cast<char>(NPattern::kWildcardByte);
    const bool hasWildcard = shown.find(wildcard) != std::string::npos;
    const bool hasQuestionMark = shown.find('?') != std::string::npos;
    const std::string which = hasQuestionMark ? "each ? without a backslash before it" : "each ?";
    std::replace(shown.begin(), shown.end(), wildcard, '?');
    const bool hasLetter = std::any_of(
        shown.begin(), shown.end(), [](char c) { return NPattern::IsAlpha(static_cast<Byte>(c)); });
    std::string words = "the text " + AlwaysQuoted(shown);
    if (hasLetter) {
        words +=
            text.IsCaseSensitive() ? ", and the case must match" : ", in uppercase or lowercase";
    }
    return words + (hasWildcard ? "; " + which + " is any one byte" : "");
}

std::string Takes(const NPattern::NumberElement& number)
{
    if (number.IsHex()) {
        return "a hexadecimal number without a sign" + AtMost(number.IntegerDigits());
    }
    if (!number.HasPoint()) {
        return "a whole number, with or without a sign" + AtMost(number.IntegerDigits());
    }
    std::string words = "a number, with or without a sign and a decimal point";
    if (number.IntegerDigits() != 0) words += AtMost(number.IntegerDigits()) + " before the point";
    if (number.FractionDigits() != 0) words += AtMost(number.FractionDigits()) + " after the point";
    return words;
}

std::string Takes(const BytesetElement& set)
{
    switch (set.Class()) {
        case NPattern::kClassAnyByte: return AmountOf(set, "byte") + " of any value";
        case NPattern::kClassLetter: return AmountOf(set, "letter") + " A to Z or a to z";
        case NPattern::kClassCharacter: return AmountOf(set, "visible character") + " (no spaces)";
        case NPattern::kClassNone: break;
    }
    return TakesBracketedSet(set);
}

std::string Takes(const BitfieldElement& block)
{
    const auto size = static_cast<std::size_t>(block.ByteCount());
    std::string words = "a block of " + CountOf(size, "byte") + ", divided into groups of bits";
    if (size > 1) {
        words += block.IsBigEndian() ? "; the first byte is the most significant"
                                     : "; the first byte is the least significant";
    }
    return words;
}

std::string Takes(const NPattern::EOLElement& /*line*/)
{
    return "the rest of the line, with the line ends after it";
}

std::string Takes(const NPattern::WhitespaceElement& /*space*/)
{
    return "white space, if there is any";
}

std::string TypeWords(const Parameter& capture)
{
    switch (capture.mType) {
        case NPattern::kTypeString: return "a string";
        case NPattern::kTypeFloat: return "a float";
        case NPattern::kTypeLInteger:
        case NPattern::kTypeBInteger: return "an integer";
        case NPattern::kTypeNone: break;
    }
    return "nothing";
}

// What there is to say of a captured value beside its type. index: of the capture in its piece.
std::string Details(const Element& /*element*/, const Parameter& /*capture*/, std::size_t /*index*/)
{
    return "";
}

std::string Details(const BytesetElement& set, const Parameter& capture, std::size_t /*index*/)
{
    if (!set.IsBinary()) return "";
    switch (capture.mType) {
        case NPattern::kTypeFloat:
            return " of the bytes as a whole number, least significant byte first";
        case NPattern::kTypeLInteger: return ", least significant byte first";
        case NPattern::kTypeBInteger: return ", most significant byte first";
        case NPattern::kTypeString:
        case NPattern::kTypeNone: break;
    }
    return "";
}

std::string Details(const BitfieldElement& block, const Parameter& /*capture*/, std::size_t index)
{
    const NPattern::BitfieldField& field = block.Fields()[index];
    const std::string low = std::to_string(field.mStartBit);
    if (field.mStartBit == field.mEndBit) return ", bit " + low;
    return ", bits " + low + " to " + std::to_string(field.mEndBit);
}

}  // namespace

std::string TakesOf(const Piece& piece)
{
    return std::visit([](const auto* element) { return Takes(*element); },
                      piece.mElement->Pointer());
}

Meaning MeaningOf(const Piece& piece)
{
    Meaning meaning;
    meaning.mTakes = TakesOf(piece);
    for (std::size_t c = 0; c < piece.mCaptures.size(); ++c) {
        const Parameter& capture = piece.mCaptures[c];
        const std::string details =
            std::visit([&](const auto* element) { return Details(*element, capture, c); },
                       piece.mElement->Pointer());
        meaning.mCaptures.push_back({capture.mName, TypeWords(capture) + details});
    }
    return meaning;
}

}  // namespace NExplain
