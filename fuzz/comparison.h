// Holds the engine against the reference: what a parsing string compiles to, and what it takes and
// captures of a message.

#pragma once

#include <cstdint>
#include <string>

#include "Common/Pattern/pattern.h"
#include "Common/Pattern/pattern_element.h"
#include "reference.h"
#include "tests/pattern/engine_support.h"

// A parsing string, compiled three times: to the flat program, to elements, and by the reference.
class Comparison {
  public:
    explicit Comparison(const std::string& parseString);

    // True if no side reports an error.
    bool Compiles() const { return mCompiles; }

    // Returns what the engine and the reference disagree about in compiling, or null.
    const char* Difference() const { return mDifference; }

    // Matches a message in each of the three ways. Returns what they disagree about, or null. Only
    // for a string that compiles.
    const char* MatchDifference(const HeapMessage& message);

    // Returns how many messages matched.
    std::uint64_t MatchCount() const { return mMatchCount; }

  private:
    const char* CompareErrors(const std::string& parseString,
                              const NPattern::PatternSyntaxException& error);
    const char* CompareCompiled(const std::string& parseString);

    bool mCompiles = false;
    std::uint64_t mMatchCount = 0;
    const char* mDifference = nullptr;
    NPattern::Pattern mPattern;
    NPattern::CapturedParameters mCaptured;
    NPattern::ElementList mElements;
    NReference::Elements mReference;
};
