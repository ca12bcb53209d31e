// Names for the outputs of a suggestion.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "values.h"

namespace NSuggest {

// What a name can be taken from.
struct NameClue {
    ValueKind mKind = ValueKind::kText;
    std::string mGivenName;       // by the user or by a header line; empty: none
    std::string mTextBefore;      // the fixed text between the field before and this one
    bool mIsAttached = false;     // mTextBefore follows the field before without white space
    bool mIsFirst = false;        // no field is before this one
    bool mIsLast = false;         // no field is after this one
    bool mIsShort = false;        // as short as a unit
    bool mFollowsNumber = false;  // the field before this one is a number
    bool mFollowsMonth = false;   // the field before this one is the name of a month
};

// Returns a name for each clue. All are different and are valid names of the language. The first
// kept names stay as they are given, unless they occur twice among these.
std::vector<std::string> NamesOf(const std::vector<NameClue>& clues, std::size_t kept);

// Numbers names that occur more than once, so that all are different. Of the first kept names, the
// first of each stays as it is.
void MakeUnique(std::vector<std::string>& ioNames, std::size_t kept);

// Returns text with the characters that a name can't hold replaced. text: its first letter or digit
// is a letter.
std::string NameFrom(std::string_view text);

}  // namespace NSuggest
