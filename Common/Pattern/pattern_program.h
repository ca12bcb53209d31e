// The compiled form that a match runs over: one flat step after another, each with its operands.

#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "pattern_bytes.h"
#include "pattern_parameter.h"

// A call that is not inlined would keep the frame of a step function alive.
#if defined(__GNUC__)
#define WORD_SIFTER_ALWAYS_INLINE [[gnu::always_inline]] inline
#else
#define WORD_SIFTER_ALWAYS_INLINE inline
#endif

namespace NPattern {

struct Step;

// Runs a step, and then the rest of the program. Matches from current on and writes what it
// captures to values, the values of all captures of the program. Returns the address just past the
// match, or null. May throw std::bad_alloc.
using StepFunction = const Byte* (*)(const Step* step, const Byte* current, const Byte* end,
                                     Parameter* values);

struct Step {
    // Operands: the type that AddStep got.
    template <typename Operands>
    const Operands& Get() const
    {
        return *std::launder(reinterpret_cast<const Operands*>(mOperands));
    }

    static constexpr std::size_t kOperandSize = 32;

    StepFunction mRun = nullptr;
    alignas(std::uint64_t) std::byte mOperands[kOperandSize] = {};
};

// How a step function ends after its step has matched up to current. With tail calls it jumps to
// the next step. Otherwise it returns, and Program::Run calls the next step, so that a long program
// does not use more stack than a short one. Only the sources of the engine are built with
// WORD_SIFTER_TAIL_CALLS, so no others may define step functions.
WORD_SIFTER_ALWAYS_INLINE const Byte* RunNextStep([[maybe_unused]] const Step* step,
                                                  const Byte* current,
                                                  [[maybe_unused]] const Byte* end,
                                                  [[maybe_unused]] Parameter* values)
{
#ifdef WORD_SIFTER_TAIL_CALLS
    return step[1].mRun(step + 1, current, end, values);
#else
    return current;
#endif
}

// How a step function begins. Skips white space if kSkipsSpace is true. Returns false if the
// message is used up, which ends every match.
template <bool kSkipsSpace>
WORD_SIFTER_ALWAYS_INLINE bool BeginStep(const Byte*& ioCurrent, const Byte* end)
{
    if (ioCurrent == end) return false;
    while (kSkipsSpace && IsSpace(*ioCurrent)) {
        if (++ioCurrent == end) return false;
    }
    return true;
}

// What a step captures: the step functions are instantiated for each.
enum ValueKind { kNoValue, kStringValue, kFloatValue, kIntegerValue, kValueKindCount };
ValueKind ValueKindOf(ParameterType type);

// The steps of a parsing string in their order, and its captures. What the operands of the steps
// refer to, mostly the elements that emitted them, must outlive the program.
class Program {
  public:
    // Lets the next step skip white space first.
    void AddSpace();

    // A text of any length. Texts without white space between them become one.
    void AddText(std::string_view text, bool caseSensitive);

    // run: indexed by whether the step is to skip white space. operands: trivial, at most
    // Step::kOperandSize bytes.
    template <typename Operands>
    void AddStep(const StepFunction (&run)[2], const Operands& operands)
    {
        static_assert(std::is_trivially_copyable_v<Operands>);
        static_assert(sizeof(Operands) <= Step::kOperandSize);
        static_assert(alignof(Operands) <= alignof(std::uint64_t));
        ::new (static_cast<void*>(NewStep(run).mOperands)) Operands(operands);
    }

    // Adds a capture with this name and type. Returns its position among the values.
    std::uint32_t AddCapture(const Parameter& capture);

    // Call once, after all steps.
    void Finish();

    // Matches from data on and returns the address just past the match, or null: also without steps
    // and for a length of 0. values: as many as Captures. After a failed match some of them are
    // written and some are not. Throws std::bad_alloc.
    const Byte* Run(const Byte* data, std::uint32_t length, Parameter* values) const;

    // Names and types of the captures, in the order of the parsing string.
    const std::vector<Parameter>& Captures() const { return mCaptures; }

  private:
    Step& NewStep(const StepFunction (&run)[2]);
    void FlushText();

    std::vector<Step> mSteps;  // after Finish the last one ends the program
    std::vector<Parameter> mCaptures;
    bool mSkipsSpace = false;  // the next step
    std::string mText;         // not yet in a step
    std::string mFold;         // kCaseBit for each letter of mText whose case is ignored
};

}  // namespace NPattern
