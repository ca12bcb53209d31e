// Parsing strings that were written for messages, and what they match.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Common/Pattern/pattern_parameter.h"

namespace NSuggest {

// What an output showed in all messages that matched.
struct OutputRange {
    std::string mName;
    NPattern::ParameterType mType;
    double mLeast = 0;                // of a number
    double mGreatest = 0;             // of a number
    std::vector<std::string> mTexts;  // of a text: each that occurred, if there were only a few
    std::size_t mShortest = 0;        // of a text, in bytes
    std::size_t mLongest = 0;         // of a text, in bytes
};

// One parsing string. It compiles and has no caution.
struct Suggestion {
    std::string mPattern;
    std::size_t mMatched = 0;  // messages that it matched, without a value cut or clamped
    std::vector<OutputRange> mOutputs;
    std::vector<std::string> mNotes;  // sentences: what is unsure, and what does not fit
};

struct Report {
    std::vector<Suggestion> mSuggestions;  // that of the most frequent kind first
    std::size_t mMessages = 0;             // that were matched against the suggestions
    std::size_t mEmpty = 0;      // messages that hold nothing but white space, not among mMessages
    std::size_t mLeftOut = 0;    // kinds of messages beyond those with suggestions
    std::size_t mUnmatched = 0;  // by any suggestion
    std::string mExample;        // the first of them; empty: there is none
    std::vector<std::string> mHeadings;  // names in the first message; it is not counted
};

}  // namespace NSuggest
