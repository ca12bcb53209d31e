// The pattern engine: compiles a parsing string, matches messages with it and hands out the
// captured values. The one header that a user of the engine includes.
//
//     NPattern::Pattern pattern;
//     pattern.SetPatternString("'T=' t:float=.#");  // throws PatternSyntaxException
//     NPattern::CapturedParameters captured;
//     if (pattern.Match(data, length) != nullptr) pattern.CollectParameters(captured);

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
// message. Only Pattern writes to it, so that it copies names and types only when the pattern has
// changed, which takes a third of the time. May outlive the pattern.
class CapturedParameters {
  public:
    CapturedParameters() = default;
    CapturedParameters(const CapturedParameters&) = delete;
    CapturedParameters& operator=(const CapturedParameters&) = delete;

    // One entry for each capture, in the order of the parsing string.
    const std::vector<Parameter>& Entries() const { return mEntries; }

  private:
    friend class Pattern;

    std::vector<Parameter> mEntries;
    // The program whose captures mEntries has. Only its address is used; holding it ensures that no
    // other program is ever at that address.
    std::shared_ptr<const Program> mProgram;
};

// A compiled parsing string: it owns its elements and keeps no copy of the string. Either empty or
// compiled; an empty pattern matches nothing. Match writes the captured values, so one Pattern
// serves one caller at a time.
class Pattern {
  public:
    Pattern();
    Pattern(Pattern&&) noexcept;
    Pattern& operator=(Pattern&&) noexcept;
    ~Pattern();

    // Compiles a string. The old elements are destroyed first, so after a throw of
    // PatternSyntaxException or std::bad_alloc the pattern is empty.
    void SetPatternString(const std::string& parseString);

    // Matches from data on: returns the address just past the match, or null. Bytes left after the
    // last element do not matter; a message that is used up before the last element does not match,
    // nor does one of length 0. Throws nothing but std::bad_alloc, and only for a captured string
    // that is longer than any before.
    const Byte* Match(const Byte* data, std::uint32_t length);

    // Replaces the content of outParameters by one entry for each capture, in the order of the
    // parsing string. Call it after a match, for the values, or after a compile, for names and
    // types. Throws nothing but std::bad_alloc.
    void CollectParameters(std::vector<Parameter>& outParameters) const;
    // The same for a caller with many messages. ioParameters may hold the captures of another
    // pattern; it keeps them if memory runs out for those that replace them.
    void CollectParameters(CapturedParameters& ioParameters) const;

    void Clear();

  private:
    std::vector<std::unique_ptr<Element>> mElements;
    std::shared_ptr<const Program> mProgram;  // refers to mElements; null: nothing is compiled
};

}  // namespace NPattern
