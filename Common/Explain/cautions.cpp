#include "cautions.h"

#include "Common/Pattern/pattern_byteset_element.h"
#include "Common/Pattern/pattern_number_element.h"

namespace NExplain {

using NPattern::BytesetElement;
using NPattern::NumberElement;

namespace {

bool CapturesNumber(const Piece& piece)
{
    return !piece.mCaptures.empty() && piece.mCaptures[0].mType != NPattern::kTypeString;
}

// Each returns a caution if the piece gives cause for it, otherwise an empty text. next: null after
// the last piece.

std::string CautionRawDigits(const Piece& piece, const Piece* /*next*/)
{
    const auto* const set = ElementAs<BytesetElement>(piece);
    if (set == nullptr || !set->IsBinary() || set->IsInBraces() ||
        set->Class() != NPattern::kClassNone || !CapturesNumber(piece)) {
        return "";
    }
    return "this set includes white space, so the number is made of the raw bytes: 1 becomes "
           "49. A set without white space, such as [-+.0-9], reads digits";
}

std::string CautionSplitNumber(const Piece& piece, const Piece* next)
{
    const auto* const number = ElementAs<NumberElement>(piece);
    const auto* const second = next != nullptr ? ElementAs<NumberElement>(*next) : nullptr;
    if (number == nullptr || number->IsHex() || number->HasPoint() || second == nullptr ||
        !second->HasPoint() || !next->mCaptures.empty()) {
        return "";
    }
    return "this piece and the next are two numbers, and only the first is captured; one number "
           "with a decimal point is .#";
}

std::string CautionWholeFloat(const Piece& piece, const Piece* /*next*/)
{
    const auto* const number = ElementAs<NumberElement>(piece);
    if (number == nullptr || number->HasPoint() || piece.mCaptures.empty() ||
        piece.mCaptures[0].mType != NPattern::kTypeFloat) {
        return "";
    }
    return "this reads whole numbers only and stops at a decimal point; .# reads the point too";
}

constexpr std::string (*kCautions[])(const Piece&, const Piece*) = {
    CautionRawDigits,
    CautionSplitNumber,
    CautionWholeFloat,
};

std::string CautionFor(const Piece& piece, const Piece* next)
{
    for (const auto cautionFor : kCautions) {
        if (std::string caution = cautionFor(piece, next); !caution.empty()) return caution;
    }
    return "";
}

}  // namespace

std::vector<Caution> FindCautions(const Pieces& pieces)
{
    std::vector<Caution> cautions;
    for (std::size_t p = 0; p < pieces.size(); ++p) {
        const Piece* const next = p + 1 < pieces.size() ? &pieces[p + 1] : nullptr;
        std::string caution = CautionFor(pieces[p], next);
        if (!caution.empty()) cautions.push_back({p, std::move(caution)});
    }
    return cautions;
}

}  // namespace NExplain
