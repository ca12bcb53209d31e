#include "piece.h"

#include <utility>

namespace NExplain {

using NPattern::CreateElement;
using NPattern::Element;
using NPattern::LToken;
using NPattern::TokenCursor;

namespace {

// The source from the first token up to the next piece, without white space at its end.
std::string SourceOf(const std::string& parseString, const LToken& first, const LToken& next)
{
    const auto start = static_cast<std::size_t>(first.mPosition);
    const std::size_t end = next.mType == NPattern::kEnd ? parseString.size()
                                                         : static_cast<std::size_t>(next.mPosition);
    std::string source = parseString.substr(start, end - start);
    while (NPattern::IsSpace(static_cast<NPattern::Byte>(source.back()))) source.pop_back();
    return source;
}

}  // namespace

Pieces TakeApart(const std::string& parseString)
{
    std::vector<LToken> tokens;
    NPattern::Tokenize(tokens, parseString);

    Pieces pieces;
    std::size_t captures = 0;
    for (TokenCursor cursor = 0;;) {
        const LToken& first = tokens[cursor];
        std::unique_ptr<Element> element = CreateElement(tokens, cursor);
        if (element == nullptr) return pieces;
        const bool skipsSpace =
            !pieces.empty() && NPattern::SkipsSpaceBetween(*pieces.back().mElement, *element);
        Piece piece = {std::move(element),
                       SourceOf(parseString, first, tokens[cursor]),
                       static_cast<std::size_t>(first.mPosition),
                       {},
                       captures,
                       skipsSpace};
        piece.mElement->CollectParameters(piece.mCaptures);
        captures += piece.mCaptures.size();
        pieces.push_back(std::move(piece));
    }
}

}  // namespace NExplain
