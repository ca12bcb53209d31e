#include "miss_explainer.h"

#include <algorithm>

#include "pattern_explainer.h"
#include "tools/output/text_forms.h"

namespace NSift {

using NPattern::Byte;

namespace {

// The miss from the point of view of the piece that refused.
struct Miss {
    const Pieces& mPieces;
    std::string_view mMessage;
    const Trace& mTrace;
    std::size_t mIndex;
    const Piece& mPiece;
    std::string mRest;  // of the message, from where it stopped

    bool IsUsedUp() const { return mRest.empty(); }
    Byte Next() const { return IsUsedUp() ? Byte{0} : static_cast<Byte>(mRest[0]); }
    const Step* LastStep() const { return mTrace.mSteps.empty() ? nullptr : &mTrace.mSteps.back(); }
    // What the piece just before took; empty if that isn't what came last.
    std::string_view TakenBefore() const
    {
        const Step* const last = LastStep();
        return last != nullptr && last->mPiece ? last->mTook.Of(mMessage) : std::string_view();
    }
    const Piece* Before() const { return mIndex > 0 ? &mPieces[mIndex - 1] : nullptr; }
};

bool IsWord(const Piece& piece, std::string_view word)
{
    return NPattern::EqualsIgnoringCase(piece.Body()->mText, word);
}

std::string Excerpt(std::string_view text)
{
    constexpr std::size_t kMost = 20;
    std::size_t length = 0;
    while (length < text.size() && length < kMost) {
        length += std::max<std::size_t>(Utf8Length(text, length), 1);
    }
    return AlwaysQuoted(text.substr(0, length)) + (length < text.size() ? " ..." : "");
}

std::string FoundText(const Miss& miss)
{
    const NPattern::LToken& text = *miss.mPiece.Body();
    const std::size_t agreement = AgreementOf(miss.mPiece, miss.mRest);
    if (agreement == miss.mRest.size()) {
        return Excerpt(miss.mRest) + ", where the message ends";
    }
    std::string words = Excerpt(miss.mRest);
    if (agreement == 0 || agreement == text.mText.size()) return words;
    return words + ", which differs at its character " + std::to_string(agreement + 1) + ": " +
           NameOfByte(static_cast<Byte>(miss.mRest[agreement])) + " instead of " +
           NameOfByte(static_cast<Byte>(text.mText[agreement]));
}

std::string FoundInSet(const Miss& miss)
{
    const std::array<bool, 256> members = MembersOf(miss.mPiece);
    const auto isMember = [&members](char c) { return members[static_cast<Byte>(c)]; };
    const auto end = std::find_if_not(miss.mRest.begin(), miss.mRest.end(), isMember);
    const auto run = static_cast<std::size_t>(end - miss.mRest.begin());
    if (run == 0) return NameOfByte(miss.Next());
    const std::string words = "only " + std::to_string(run) + " of them, then ";
    return words +
           (end == miss.mRest.end() ? "the message ends" : NameOfByte(static_cast<Byte>(*end)));
}

std::string FoundWords(const Miss& miss)
{
    if (miss.IsUsedUp()) return "nothing";
    switch (miss.mPiece.mKind) {
        case PieceKind::kText: return FoundText(miss);
        case PieceKind::kSet: return FoundInSet(miss);
        case PieceKind::kBits: return "only " + CountOf(miss.mRest.size(), "byte");
        default: return NameOfByte(miss.Next());
    }
}

std::string VerdictWords(const Miss& miss)
{
    const std::string piece = "piece " + std::to_string(miss.mIndex + 1);
    if (miss.mMessage.empty()) return "the message is empty";
    if (miss.IsUsedUp()) return "message used up before " + piece;
    return piece + " refused it at byte " + std::to_string(miss.mTrace.mStoppedAt);
}

// Each gives a hint if the miss is its own, else an empty text.

std::string HintOtherCase(const Miss& miss)
{
    if (miss.mPiece.mKind != PieceKind::kText) return "";
    std::string wanted = miss.mPiece.Body()->mText;
    if (wanted.size() > miss.mRest.size() ||
        !NPattern::EqualsIgnoringCase(wanted, miss.mRest.substr(0, wanted.size()))) {
        return "";
    }
    return "only upper and lower case differ: a text in \"double quotes\" ignores that";
}

std::string HintSpace(const Miss& miss)
{
    if (miss.IsUsedUp() || !NPattern::IsSpace(miss.Next())) return "";
    if (miss.mIndex == 0) {
        return "white space at the start of a message isn't skipped; a piece for it could stand "
               "first: [ ]";
    }
    if (miss.mPiece.mSkipsSpace) return "";
    return "white space is skipped only between two pieces that read text, and piece " +
           std::to_string(miss.mPiece.mElement->IsBinary() ? miss.mIndex + 1 : miss.mIndex) +
           " reads bytes";
}

std::string HintPoint(const Miss& miss)
{
    const Piece* const before = miss.Before();
    if (before == nullptr || before->mKind != PieceKind::kNumber || miss.Next() != '.') return "";
    if (IsHexNumber(*before) || IsPointNumber(*before)) return "";
    return "a number that may have a point is written .#";
}

std::string HintExponent(const Miss& miss)
{
    const Piece* const before = miss.Before();
    if (before == nullptr || before->mKind != PieceKind::kNumber || IsHexNumber(*before)) return "";
    if (NPattern::ToLower(miss.Next()) != 'e') return "";
    return "a number with an exponent is read as name:float=[-+.0-9Ee]";
}

std::string HintHexPrefix(const Miss& miss)
{
    const Piece* const before = miss.Before();
    if (before == nullptr || before->mKind != PieceKind::kNumber || miss.TakenBefore() != "0" ||
        NPattern::ToLower(miss.Next()) != 'x') {
        return "";
    }
    return "a prefix 0x isn't part of a number: a text '0x' takes it, and x the hexadecimal number "
           "behind it";
}

std::string HintSign(const Miss& miss)
{
    if (!IsHexNumber(miss.mPiece) || (miss.Next() != '-' && miss.Next() != '+')) return "";
    return "a hexadecimal number has no sign";
}

// A text that stands later on, but wasn't where it was wanted.
std::string HintFurtherOn(const Miss& miss)
{
    if (miss.mPiece.mKind != PieceKind::kText) return "";
    const std::size_t place = miss.mRest.find(miss.mPiece.Body()->mText);
    if (place == std::string::npos || place == 0) return "";
    return "this text stands further on, behind " + Excerpt(miss.mRest.substr(0, place)) +
           ": nothing is passed over, a piece has to take that";
}

std::string HintTookTooMuch(const Miss& miss)
{
    const std::string_view taken = miss.TakenBefore();
    if (taken.empty()) return "";
    const std::size_t piece = *miss.LastStep()->mPiece;
    const bool tookWanted = miss.mPiece.mKind == PieceKind::kText &&
                            taken.find(miss.mPiece.Body()->mText) != std::string_view::npos;
    if (!tookWanted && !(miss.IsUsedUp() && taken.size() > 1 &&
                         (miss.mPieces[piece].mKind == PieceKind::kSet ||
                          miss.mPieces[piece].mKind == PieceKind::kLine))) {
        return "";
    }
    return "piece " + std::to_string(piece + 1) + " took " + Excerpt(taken) +
           ": a piece takes all it can and never gives back" +
           (miss.mPieces[piece].mKind == PieceKind::kSet
                ? "; a set without the character that ends the field stops there, as [^,] does"
                : "");
}

std::string HintCut(const Miss& miss)
{
    if (!miss.mTrace.mIsCut || !miss.IsUsedUp()) return "";
    return "the message goes on with a byte 00, but the host passes text that ends there";
}

std::string HintEmptyRest(const Miss& miss)
{
    if (!miss.IsUsedUp() || miss.mTrace.mIsCut || miss.mMessage.empty() ||
        !IsWord(miss.mPiece, "eol"))
        return "";
    return "each piece needs at least one character, eol too";
}

constexpr std::string (*kHints[])(const Miss&) = {
    HintOtherCase, HintSpace,     HintPoint,       HintExponent, HintHexPrefix,
    HintSign,      HintFurtherOn, HintTookTooMuch, HintCut,      HintEmptyRest,
};

}  // namespace

MissWords ExplainMiss(const Pieces& pieces, std::string_view message, const Trace& trace)
{
    const std::size_t index = *trace.mRefusedBy;
    const Miss miss{pieces, message,       trace,
                    index,  pieces[index], std::string(message.substr(trace.mStoppedAt))};
    MissWords words{VerdictWords(miss), WantsOf(miss.mPiece), FoundWords(miss), {}};
    for (const auto hintFor : kHints) {
        if (std::string hint = hintFor(miss); !hint.empty())
            words.mHints.push_back(std::move(hint));
    }
    return words;
}

}  // namespace NSift
