#include "pattern_byteset_steps.h"

#include "pattern_memory.h"

namespace NPattern {

namespace {

// What a set step captures, beside nothing: a string, an integer of the first bytes in either byte
// order, or any other value, by a setter of Parameter.
enum SetCapture {
    kCapturesNothing,
    kCapturesString,
    kCapturesLittleEndian,
    kCapturesBigEndian,
    kCapturesOther,
    kSetCaptureCount
};

// Captures the run by a setter of Parameter. The steps below jump here for what is rare, so that
// the common case calls nothing.
const Byte* RunBySetter(const Step* step, const Byte* current, const Byte* end, Parameter* values)
{
    const auto& operands = step->Get<SetOperands>();
    const std::uint32_t run = RunLengthOf(operands.mMembers, operands.mLength, current,
                                          static_cast<std::uint32_t>(end - current));
    Parameter& value = values[operands.mValue];
    if (operands.mIsBinary) {
        value.SetBinaryValue(current, run);
    } else {
        value.SetTextValue(current, run, false);
    }
    return RunNextStep(step, current + run, end, values);
}

// Stores what the setter of Parameter would, or returns false.
template <SetCapture kCapture>
bool StoreRun(const Byte* data, std::uint32_t length, Parameter& outParameter)
{
    if (kCapture == kCapturesString) {
        AssignBytes(outParameter.mStringValue, reinterpret_cast<const char*>(data), length);
        return true;
    }
    if (kCapture == kCapturesOther || length > sizeof(std::uint32_t)) return false;
    std::uint32_t value = 0;
    for (std::uint32_t i = 0; i < length; ++i) {
        value = kCapture == kCapturesLittleEndian ? value | std::uint32_t{data[i]} << 8 * i
                                                  : value << 8 | data[i];
    }
    outParameter.mIntValue = static_cast<std::int32_t>(value);
    return true;
}

template <bool kSkipsSpace, SetCapture kCapture>
const Byte* RunSet(const Step* step, const Byte* current, const Byte* end, Parameter* values)
{
    if (!BeginStep<kSkipsSpace>(current, end)) return nullptr;
    const auto& operands = step->Get<SetOperands>();
    const std::uint32_t run = RunLengthOf(operands.mMembers, operands.mLength, current,
                                          static_cast<std::uint32_t>(end - current));
    if (run == 0) return nullptr;
    if constexpr (kCapture != kCapturesNothing) {
        if (!StoreRun<kCapture>(current, run, values[operands.mValue])) {
            return RunBySetter(step, current, end, values);
        }
    }
    return RunNextStep(step, current + run, end, values);
}

// A number of bytes of any value, before which white space is never skipped.
template <SetCapture kCapture>
const Byte* RunAnyBytes(const Step* step, const Byte* current, const Byte* end, Parameter* values)
{
    const auto& operands = step->Get<SetOperands>();
    if (static_cast<std::size_t>(end - current) < operands.mLength) return nullptr;
    if constexpr (kCapture != kCapturesNothing) {
        if (!StoreRun<kCapture>(current, operands.mLength, values[operands.mValue])) {
            return RunBySetter(step, current, end, values);
        }
    }
    return RunNextStep(step, current + operands.mLength, end, values);
}

// Indexed by SetCapture, and then by whether the step skips white space.
constexpr StepFunction kSetSteps[kSetCaptureCount][2] = {
    {RunSet<false, kCapturesNothing>, RunSet<true, kCapturesNothing>},
    {RunSet<false, kCapturesString>, RunSet<true, kCapturesString>},
    {RunSet<false, kCapturesLittleEndian>, RunSet<true, kCapturesLittleEndian>},
    {RunSet<false, kCapturesBigEndian>, RunSet<true, kCapturesBigEndian>},
    {RunSet<false, kCapturesOther>, RunSet<true, kCapturesOther>},
};
// Indexed by SetCapture.
constexpr StepFunction kAnyBytesSteps[kSetCaptureCount] = {
    RunAnyBytes<kCapturesNothing>,      RunAnyBytes<kCapturesString>,
    RunAnyBytes<kCapturesLittleEndian>, RunAnyBytes<kCapturesBigEndian>,
    RunAnyBytes<kCapturesOther>,
};

SetCapture CaptureOf(ParameterType type, bool isBinary)
{
    switch (type) {
        case kTypeString: return kCapturesString;
        case kTypeLInteger: return isBinary ? kCapturesLittleEndian : kCapturesOther;
        case kTypeBInteger: return isBinary ? kCapturesBigEndian : kCapturesOther;
        case kTypeFloat: return kCapturesOther;
        case kTypeNone: break;
    }
    return kCapturesNothing;
}

}  // namespace

void AddSetStep(const SetOperands& operands, ParameterType type, Program& ioProgram)
{
    const SetCapture capture = CaptureOf(type, operands.mIsBinary);
    if (operands.mIsAnyByte) {
        const StepFunction run = kAnyBytesSteps[capture];
        ioProgram.AddStep({run, run}, operands);
    } else {
        ioProgram.AddStep(kSetSteps[capture], operands);
    }
}

}  // namespace NPattern
