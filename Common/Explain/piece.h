// A parsing string taken apart into its pieces, as the engine compiles it.

#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "Common/Pattern/pattern_element.h"

namespace NExplain {

// One form of the parsing string, with its declaration header.
struct Piece {
    std::unique_ptr<NPattern::Element> mElement;
    std::string mSource;                         // as written
    std::size_t mStart;                          // offset of mSource in the parsing string
    std::vector<NPattern::Parameter> mCaptures;  // their names and types
    std::size_t mFirstCapture;                   // position among all captures, from 0
    bool mSkipsSpace;                            // white space before it is skipped
};

using Pieces = std::vector<Piece>;

// Throws NPattern::PatternSyntaxException, as a compile does.
Pieces TakeApart(const std::string& parseString);

// Returns the element of a piece if it is of this class, otherwise null.
template <typename Form>
const Form* ElementAs(const Piece& piece)
{
    const NPattern::ElementPointer element = piece.mElement->Pointer();
    const auto* const form = std::get_if<const Form*>(&element);
    return form != nullptr ? *form : nullptr;
}

}  // namespace NExplain
