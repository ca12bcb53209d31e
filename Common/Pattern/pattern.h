// The pattern engine: compiles a parsing string, matches messages with it and hands out the
// captured values. The one header that a user of the engine includes.
//
//     NPattern::Pattern pattern;
//     pattern.SetPatternString("'T=' t:float=.#");  // throws PatternSyntaxException
//     NPattern::CapturedParameters captured;
//     if (pattern.Match(data, length, captured) != nullptr) Use(captured.Entries());

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "pattern_bytes.h"
#include "pattern_error.h"
#include "pattern_parameter.h"

namespace NPattern {

class Element;
class Program;

// The captured values of one match after another, for a caller who keeps it from message to
// message: names and types are copied only when the pattern has changed. May outlive the pattern.
class CapturedParameters {
  public:
    CapturedParameters() = default;
    CapturedParameters(CapturedParameters&&) = default;
    CapturedParameters& operator=(CapturedParameters&&) = default;

    // One entry for each capture, in the order of the parsing string.
    const std::vector<Parameter>& Entries() const { return mEntries; }

  private:
    friend class Pattern;

    // Throws std::bad_alloc, and is then unchanged.
    void Follow(const std::shared_ptr<const Program>& program);

    std::vector<Parameter> mEntries;
    // The program whose captures mEntries has. Only its address is used; holding it ensures that no
    // other program is ever at that address.
    std::shared_ptr<const Program> mProgram;
};

// A compiled parsing string: it owns its elements and keeps no copy of the string. Either empty or
// compiled; an empty pattern matches nothing. Match writes the captured values, so one Pattern
// serves one caller at a time. A pattern that was moved from is empty.
class Pattern {
  public:
    Pattern();
    Pattern(Pattern&&) noexcept;
    Pattern& operator=(Pattern&&) noexcept;
    ~Pattern();

    // Compiles a string. The old elements are destroyed first, so after a throw of
    // PatternSyntaxException or std::bad_alloc the pattern is empty.
    void SetPatternString(const std::string& parseString);

    // Matches from data on, which may be null if length is 0: returns the address just past the
    // match, or null. Bytes left after the last element do not matter; a message that is used up
    // before the last element does not match, nor does one of length 0. Throws nothing but
    // std::bad_alloc, and only for a captured string that is longer than any before.
    const Byte* Match(const Byte* data, std::uint32_t length);
    // The same, with the captured values in outParameters, and none for CollectParameters. It may
    // hold those of another pattern before. After a failed match its names and types are those of
    // this pattern, but some of its values are of this message and some of earlier ones.
    const Byte* Match(const Byte* data, std::uint32_t length, CapturedParameters& outParameters);

    // Replaces the content of outParameters by one entry for each capture, in the order of the
    // parsing string. Call it after a match without CapturedParameters, for the values, or after a
    // compile, for names and types. Throws nothing but std::bad_alloc.
    void CollectParameters(std::vector<Parameter>& outParameters) const;

    void Clear();

  private:
    std::vector<std::unique_ptr<Element>> mElements;
    std::shared_ptr<const Program> mProgram;  // refers to mElements; null: nothing is compiled
    CapturedParameters mCaptured;             // of a match without CapturedParameters
};

}  // namespace NPattern
