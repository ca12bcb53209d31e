// A parsing string taken apart into its pieces, for those who explain it. The engine itself does
// the work, so that what is told of a piece is what the plug-in does with it.

#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "Common/Pattern/pattern_element.h"

namespace NSift {

enum class PieceKind { kText, kNumber, kSet, kBits, kLine };

// One form of the parsing string, with its header.
struct Piece {
    PieceKind mKind;
    std::unique_ptr<NPattern::Element> mElement;
    std::vector<NPattern::LToken> mTokens;       // kEnd behind them
    std::string mSource;                         // as written
    std::vector<NPattern::Parameter> mCaptures;  // their names and types
    std::size_t mFirstCapture;                   // position among all captures, from 0
    bool mSkipsSpace;                            // white space in front of it is skipped

    // The first token behind the header.
    const NPattern::LToken* Body() const { return &mTokens[NPattern::SkipDeclaration(mTokens, 0)]; }
};

using Pieces = std::vector<Piece>;

// Throws NPattern::PatternSyntaxException, as a compile does.
Pieces TakeApart(const std::string& pattern);

// Which bytes a piece of kSet takes.
std::array<bool, 256> MembersOf(const Piece& piece);

// Whether a piece is a number of hexadecimal digits, or one that may have a point.
bool IsHexNumber(const Piece& piece);
bool IsPointNumber(const Piece& piece);

// The size of the block of a piece of kBits, in bytes.
std::size_t BlockSizeOf(const Piece& piece);

// How many bytes at the start of rest fit the text of a piece of kText.
std::size_t AgreementOf(const Piece& piece, const std::string& rest);

}  // namespace NSift
