#include "pattern_pieces.h"

#include <algorithm>

#include "Common/Pattern/pattern_bitfield_element.h"
#include "Common/Pattern/pattern_byteset_element.h"
#include "Common/Pattern/pattern_number_element.h"
#include "Common/Pattern/pattern_string_element.h"

namespace NSift {

using NPattern::Byte;
using NPattern::CreateElement;
using NPattern::Element;
using NPattern::LToken;
using NPattern::Parameter;
using NPattern::TokenCursor;

namespace {

PieceKind KindOf(const Element& element)
{
    if (dynamic_cast<const NPattern::StringElement*>(&element) != nullptr) return PieceKind::kText;
    if (dynamic_cast<const NPattern::NumberElement*>(&element) != nullptr)
        return PieceKind::kNumber;
    if (dynamic_cast<const NPattern::BytesetElement*>(&element) != nullptr) return PieceKind::kSet;
    if (dynamic_cast<const NPattern::BitfieldElement*>(&element) != nullptr)
        return PieceKind::kBits;
    return PieceKind::kLine;
}

std::vector<Parameter> CapturesOf(const Element& element)
{
    std::vector<Parameter> captures;
    element.CollectParameters(captures);
    return captures;
}

// Up to where the next token starts, without the blanks in front of it.
std::string SourceOf(const std::string& pattern, const LToken& first, const LToken& next)
{
    const auto start = static_cast<std::size_t>(first.mPosition);
    const std::size_t end =
        next.mType == NPattern::kEnd ? pattern.size() : static_cast<std::size_t>(next.mPosition);
    std::string source = pattern.substr(start, end - start);
    while (NPattern::IsSpace(static_cast<Byte>(source.back()))) source.pop_back();
    return source;
}

}  // namespace

Pieces TakeApart(const std::string& pattern)
{
    std::vector<LToken> tokens;
    NPattern::Tokenize(tokens, pattern);

    Pieces pieces;
    std::size_t captures = 0;
    for (TokenCursor cursor = 0;;) {
        const TokenCursor start = cursor;
        std::unique_ptr<Element> element = CreateElement(tokens, cursor);
        if (element == nullptr) return pieces;
        const bool skipsSpace =
            !pieces.empty() && !pieces.back().mElement->IsBinary() && !element->IsBinary();
        Piece& piece = pieces.emplace_back();
        piece.mKind = KindOf(*element);
        piece.mElement = std::move(element);
        piece.mTokens.assign(tokens.begin() + static_cast<std::ptrdiff_t>(start),
                             tokens.begin() + static_cast<std::ptrdiff_t>(cursor));
        piece.mTokens.emplace_back();
        piece.mSource = SourceOf(pattern, tokens[start], tokens[cursor]);
        piece.mCaptures = CapturesOf(*piece.mElement);
        piece.mFirstCapture = captures;
        piece.mSkipsSpace = skipsSpace;
        captures += piece.mCaptures.size();
    }
}

// Asked of the same set with a count of one: a counted class doesn't match a single byte.
std::array<bool, 256> MembersOf(const Piece& piece)
{
    std::vector<LToken> tokens = piece.mTokens;
    LToken& body = tokens[NPattern::SkipDeclaration(tokens, 0)];
    if (body.mType == NPattern::kNumber) body.mValue = 1;
    TokenCursor cursor = 0;
    const std::unique_ptr<Element> element = CreateElement(tokens, cursor);

    std::array<bool, 256> members{};
    for (unsigned b = 0; b < members.size(); ++b) {
        const auto byte = static_cast<Byte>(b);
        members[b] = element->Match(&byte, 1) != nullptr;
    }
    return members;
}

bool IsHexNumber(const Piece& piece)
{
    if (piece.mKind != PieceKind::kNumber) return false;
    const NPattern::LToken* token = piece.Body();
    if (token->mType == NPattern::kNumber) ++token;
    return NPattern::EqualsIgnoringCase(token->mText, "x") ||
           NPattern::EqualsIgnoringCase(token->mText, "hex");
}

bool IsPointNumber(const Piece& piece)
{
    if (piece.mKind != PieceKind::kNumber) return false;
    return std::any_of(piece.mTokens.begin(), piece.mTokens.end(), [](const auto& token) {
        return token.mType == NPattern::kSymbol && token.mText == ".";
    });
}

std::size_t BlockSizeOf(const Piece& piece)
{
    std::int64_t highestBit = 0;  // every number of a bit field is one of a bit
    for (const LToken& token : piece.mTokens) {
        highestBit = std::max<std::int64_t>(highestBit, token.mValue);
    }
    return static_cast<std::size_t>((highestBit + 8) / 8);
}

// Asked of ever longer beginnings of the text.
std::size_t AgreementOf(const Piece& piece, const std::string& rest)
{
    const LToken& text = *piece.Body();
    std::vector<LToken> tokens = {text, LToken()};
    const auto* const data = reinterpret_cast<const Byte*>(rest.data());
    for (std::size_t length = 1; length <= text.mText.size(); ++length) {
        tokens[0].mText = text.mText.substr(0, length);
        TokenCursor cursor = 0;
        const auto element = CreateElement(tokens, cursor);
        if (element->Match(data, static_cast<std::uint32_t>(rest.size())) == nullptr) {
            return length - 1;
        }
    }
    return text.mText.size();
}

}  // namespace NSift
