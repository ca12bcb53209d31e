#include "first_bytes.h"

#include "Common/Pattern/pattern_elements.h"

namespace NExplain {

using NPattern::Byte;
using NPattern::BytesetElement;
using NPattern::Element;
using NPattern::EOLElement;
using NPattern::NumberElement;
using NPattern::StringElement;

namespace {

template <typename Predicate>
ByteSet BytesWith(Predicate predicate)
{
    ByteSet bytes;
    for (unsigned b = 0; b < 256; ++b) bytes[b] = predicate(static_cast<Byte>(b));
    return bytes;
}

const ByteSet& DigitsOf(const NumberElement& number)
{
    static const ByteSet kHexDigits = BytesWith(NPattern::IsHexDigit);
    return number.IsHex() ? kHexDigits : DigitBytes();
}

// For a form without a function of its own, nothing can be excluded.
ByteSet First(const Element& /*element*/)
{
    return ByteSet().set();
}

ByteSet First(const StringElement& text)
{
    const auto first = static_cast<Byte>(text.MatchText().front());
    if (first == NPattern::kWildcardByte) return ByteSet().set().reset(0);
    ByteSet bytes;
    bytes.set(first);
    if (!text.IsCaseSensitive() && NPattern::IsAlpha(first)) bytes.set(first ^ NPattern::kCaseBit);
    return bytes;
}

ByteSet First(const NumberElement& number)
{
    ByteSet bytes = DigitsOf(number);
    if (!number.IsHex()) bytes.set('+').set('-');
    if (number.HasPoint()) bytes.set('.');
    return bytes;
}

ByteSet First(const BytesetElement& set)
{
    return BytesWith([&set](Byte b) { return set.Has(b); });
}

ByteSet NeverAfter(const Element& /*element*/)
{
    return {};
}

ByteSet NeverAfter(const NumberElement& number)
{
    const bool hasLimit = number.IntegerDigits() != 0 || number.FractionDigits() != 0;
    return hasLimit ? ByteSet() : DigitsOf(number);
}

ByteSet NeverAfter(const BytesetElement& set)
{
    return set.Length() == 0 ? First(set) : ByteSet();
}

ByteSet NeverAfter(const EOLElement& /*line*/)
{
    return ByteSet().set('\r').set('\n');
}

}  // namespace

ByteSet FirstBytes(const Piece& piece)
{
    return std::visit([](const auto* element) { return First(*element); },
                      piece.mElement->Pointer());
}

ByteSet BytesNeverAfter(const Piece& piece)
{
    return std::visit([](const auto* element) { return NeverAfter(*element); },
                      piece.mElement->Pointer());
}

const ByteSet& DigitBytes()
{
    static const ByteSet kDigits = BytesWith(NPattern::IsDigit);
    return kDigits;
}

}  // namespace NExplain
