// The compiled form that a match runs over.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "pattern_bytes.h"
#include "pattern_parameter.h"

namespace NPattern {

class Element;

// Up to eight bytes of a plain text, compared with a message in one operation. Bytes in the order
// of memory.
class TextWord {
  public:
    static constexpr std::size_t kMostBytes = sizeof(std::uint64_t);

    TextWord() = default;  // is in any word
    // text: 1 to kMostBytes bytes. A NUL in it must be its only byte: after others it would be
    // found in the zeros that follow a message.
    TextWord(std::string_view text, bool caseSensitive);

    // word: eight bytes of a message, with zeros after its end.
    bool IsIn(std::uint64_t word) const { return (((word | mFold) ^ mText) & mMask) == 0; }

    std::uint32_t Size() const { return mSize; }

  private:
    std::uint64_t mText = 0;
    std::uint64_t mFold = 0;  // kCaseBit in each letter whose case is ignored
    std::uint64_t mMask = 0;  // all bits of the bytes in use
    std::uint32_t mSize = 0;  // bytes in use
};

// The steps of a parsing string in their order, and its captures. Plain texts and white space, most
// of a parsing string, are steps of their own; any other element is called. Refers to elements and
// owns none.
class Program {
  public:
    // What an element emits. AddSpace lets the next step skip white space first.
    void AddSpace() { mSpacePending = true; }
    void AddText(std::string_view text, bool caseSensitive);
    void AddElement(Element& element);
    void AddCapture(const Parameter& capture) { mCaptures.push_back(&capture); }

    // Matches from data on and returns the address just past the match, or null. Without a step it
    // returns null. Writes the captures of the elements. Throws std::bad_alloc.
    const Byte* Run(const Byte* data, std::uint32_t length) const;

    // Where the captured values are, in the order of the parsing string.
    const std::vector<const Parameter*>& Captures() const { return mCaptures; }

  private:
    struct Step {
        bool mSkipsSpace;
        Element* mElement;  // null: the step is a text
        TextWord mText;
    };

    void AddStep(Element* element, const TextWord& text);

    std::vector<Step> mSteps;
    std::vector<const Parameter*> mCaptures;
    bool mSpacePending = false;  // AddSpace was called after the last step
};

}  // namespace NPattern
