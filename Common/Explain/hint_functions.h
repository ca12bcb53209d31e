// The hints at mistakes in parsing strings that are not in syntax_hints itself.

#pragma once

#include <string>

#include "fault_place.h"

namespace NExplain {

// Returns the count and the word as a parsing string has them: "4 digits", "4x".
std::string Counted(const std::string& count, const std::string& word);

// Each returns a hint if it knows the mistake, otherwise an empty text.

std::string HintBeforeHeader(const FaultPlace& place);
std::string HintColonForgotten(const FaultPlace& place);
std::string HintEqualsForgotten(const FaultPlace& place);
std::string HintNameCharacters(const FaultPlace& place);
std::string HintNothingAfterHeader(const FaultPlace& place);
std::string HintTypeForgotten(const FaultPlace& place);
std::string HintTypeMisspelt(const FaultPlace& place);

std::string HintBitRanges(const FaultPlace& place);
std::string HintBitsWithoutParentheses(const FaultPlace& place);
std::string HintCountBeforeBracket(const FaultPlace& place);
std::string HintHeaderBeforeBits(const FaultPlace& place);
std::string HintOrderAfterBytes(const FaultPlace& place);
std::string HintSet(const FaultPlace& place);
std::string HintWideBits(const FaultPlace& place);

}  // namespace NExplain
