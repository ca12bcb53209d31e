// Splits messages of one structure into columns.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "message_token.h"
#include "values.h"

namespace NSuggest {

// The separators of a message, and the segments before, between and after them: one more.
struct Segments {
    std::string mSeparators;
    std::vector<std::string_view> mTexts;  // may be empty; white space around them included
};

// Where messages are split.
struct Cuts {
    std::string mSeparators;                // the characters that are one
    std::size_t mMost = std::string::npos;  // separators after these are part of the last segment
};

// The segments refer to message.
Segments SegmentsOf(std::string_view message, const Cuts& cuts);

// Returns the separators of messages that begin alike: the usual ones, and other marks of which
// each message has as many.
std::string SeparatorsOf(const Column& messages);

// Returns what is between white space. The words refer to text.
std::vector<std::string_view> WordsIn(std::string_view text);

// Segments first to last, with the separators between them, are one text.
struct MergedSegments {
    std::size_t mFirst;
    std::size_t mLast;
};

// Returns the columns of messages that have the same separators. messages: trimmed at the end.
// What is left of each message after its last column is empty in some.
std::vector<Column> SplitAtSeparators(const Column& messages, const Cuts& cuts,
                                      const std::optional<MergedSegments>& merged,
                                      Sameness sameness);

}  // namespace NSuggest
