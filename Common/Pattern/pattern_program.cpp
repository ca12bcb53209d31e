#include "pattern_program.h"

#include <algorithm>
#include <array>
#include <utility>

#include "pattern_memory.h"

namespace NPattern {

namespace {

// The longest text of one step.
constexpr std::size_t kLongestText = sizeof(std::uint64_t);

struct TextOperands {
    std::uint64_t mText;  // with mFold set
    std::uint64_t mFold;
};

// Returns a text of kSize bytes as one number, whatever the byte order.
template <std::size_t kSize>
std::uint64_t ReadText(const Byte* text)
{
    if constexpr (kSize == 8) {
        return ReadWord<std::uint64_t>(text);
    } else if constexpr (kSize > 4) {
        // Two words that overlap.
        return std::uint64_t{ReadWord<std::uint32_t>(text)} << 32 |
               ReadWord<std::uint32_t>(text + kSize - 4);
    } else if constexpr (kSize == 4) {
        return ReadWord<std::uint32_t>(text);
    } else if constexpr (kSize > 1) {
        return std::uint64_t{ReadWord<std::uint16_t>(text)} << 32 |
               ReadWord<std::uint16_t>(text + kSize - 2);
    } else {
        return *text;
    }
}

template <bool kSkipsSpace, std::size_t kSize>
const Byte* RunText(const Step* step, const Byte* current, const Byte* end, Parameter* values)
{
    if (!BeginStep<kSkipsSpace>(current, end)) return nullptr;
    if (kSize > 1 && static_cast<std::size_t>(end - current) < kSize) return nullptr;
    const auto& operands = step->Get<TextOperands>();
    if ((ReadText<kSize>(current) | operands.mFold) != operands.mText) return nullptr;
    return RunNextStep(step, current + kSize, end, values);
}

template <std::size_t kSize>
TextOperands MakeTextOperands(const Byte* text, const Byte* fold)
{
    const std::uint64_t folded = ReadText<kSize>(fold);
    return {ReadText<kSize>(text) | folded, folded};
}

struct TextStep {
    StepFunction mRun[2];
    TextOperands (*mOperandsOf)(const Byte* text, const Byte* fold);
};

template <std::size_t... kIndexes>
constexpr auto MakeTextSteps(std::index_sequence<kIndexes...> /*sizes*/)
{
    return std::array<TextStep, sizeof...(kIndexes)>{
        {{{RunText<false, kIndexes + 1>, RunText<true, kIndexes + 1>},
          MakeTextOperands<kIndexes + 1>}...}};
}

// Indexed by the size of the text less 1.
constexpr auto kTextSteps = MakeTextSteps(std::make_index_sequence<kLongestText>());

const Byte* EndProgram(const Step* /*step*/, const Byte* current, const Byte* /*end*/,
                       Parameter* /*values*/)
{
    return current;
}

}  // namespace

ValueKind ValueKindOf(ParameterType type)
{
    switch (type) {
        case kTypeString: return kStringValue;
        case kTypeFloat: return kFloatValue;
        case kTypeLInteger:
        case kTypeBInteger: return kIntegerValue;
        case kTypeNone: break;
    }
    return kNoValue;
}

void Program::AddSpace()
{
    FlushText();
    mSkipsSpace = true;
}

void Program::AddText(std::string_view text, bool caseSensitive)
{
    for (const char c : text) {
        const bool ignoresCase = !caseSensitive && IsAlpha(static_cast<Byte>(c));
        mText.push_back(c);
        mFold.push_back(ignoresCase ? static_cast<char>(kCaseBit) : '\0');
    }
}

std::uint32_t Program::AddCapture(const Parameter& capture)
{
    mCaptures.push_back(capture);
    return static_cast<std::uint32_t>(mCaptures.size() - 1);
}

void Program::Finish()
{
    FlushText();
    if (!mSteps.empty()) NewStep({EndProgram, EndProgram});
}

const Byte* Program::Run(const Byte* data, std::uint32_t length, Parameter* values) const
{
    if (mSteps.empty()) return nullptr;
    const Byte* const end = data + length;
#ifdef WORD_SIFTER_TAIL_CALLS
    return mSteps.front().mRun(mSteps.data(), data, end, values);
#else
    const Byte* current = data;
    for (const Step& step : mSteps) {
        current = step.mRun(&step, current, end, values);
        if (current == nullptr) return nullptr;
    }
    return current;
#endif
}

Step& Program::NewStep(const StepFunction (&run)[2])
{
    FlushText();
    Step& step = mSteps.emplace_back();
    step.mRun = run[std::exchange(mSkipsSpace, false) ? 1 : 0];
    return step;
}

void Program::FlushText()
{
    const std::string text = std::exchange(mText, {});
    const std::string fold = std::exchange(mFold, {});
    for (std::size_t start = 0; start < text.size(); start += kLongestText) {
        const std::size_t size = std::min(text.size() - start, kLongestText);
        const TextStep& step = kTextSteps[size - 1];
        AddStep(step.mRun, step.mOperandsOf(reinterpret_cast<const Byte*>(text.data() + start),
                                            reinterpret_cast<const Byte*>(fold.data() + start)));
    }
}

}  // namespace NPattern
