// Chooses the form of the language that takes the values of a field.

#pragma once

#include <optional>
#include <string>

#include "values.h"

namespace NSuggest {

// What is next to the values of a field in all messages.
struct Surroundings {
    std::string mTextBefore;          // fixed text; empty: none
    bool mIsLast = false;             // nothing that is described follows
    bool mSpaceFollows = false;       // white space follows each value
    bool mSpaceNeverFollows = false;  // white space follows no value
    std::optional<char> mNextSpace;   // the first byte of the white space that follows each value
    std::optional<char> mNextText;    // the first byte of the fixed text that follows
};

struct ValueForm {
    std::string mType;         // string, float, integer
    std::string mForm;         // #, letters, [^,]
    bool mIsRaw = false;       // reads raw bytes: white space next to it isn't skipped
    bool mAbsorbsGap = false;  // takes the white space after it too
    bool mTakesRest = false;   // takes the whole rest of the line: nothing can follow
};

// Returns the form that takes all the values, and the widest values of their kind.
ValueForm FormOf(const Values& values, const Surroundings& around);

}  // namespace NSuggest
