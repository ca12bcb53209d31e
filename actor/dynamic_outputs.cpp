#include "dynamic_outputs.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <vector>

#include "checks.h"
#include "parser_data.h"

namespace NActor {

using NPattern::Parameter;

namespace {

constexpr char kIdBase[] = "ot";

// What the host is told of an output beside its name and its value. The flags are words of the
// host's interface.
struct OutputKind {
    HostValueTag mTag;
    std::uint32_t mFirstFlags;
    std::uint32_t mSecondFlags;
    std::uint64_t mMinimum;  // payloads
    std::uint64_t mMaximum;
};

constexpr OutputKind kStringOutput = {kValueString, 0x10002000, 0x2000, 0, 0};
constexpr OutputKind kFloatOutput = {
    kValueFloat, 0x10000001, 1, std::bit_cast<std::uint64_t>(std::numeric_limits<double>::lowest()),
    std::bit_cast<std::uint64_t>(std::numeric_limits<double>::max())};
constexpr OutputKind kIntegerOutput = {
    kValueInteger, 0x10000001, 1,
    std::bit_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::min()),
    std::bit_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())};

const OutputKind& KindOf(const Parameter& parameter)
{
    switch (parameter.mType) {
        case NPattern::kTypeString: return kStringOutput;
        case NPattern::kTypeFloat: return kFloatOutput;
        default: return kIntegerOutput;
    }
}

struct OutputDefinition {
    OutputDefinition(const HostContext* context, const Parameter& parameter)
        : mName(parameter.mName.c_str()), mKind(KindOf(parameter))
    {
        mMinimum.mTag = mMaximum.mTag = mKind.mTag;
        mMinimum.mPayload = mKind.mMinimum;
        mMaximum.mPayload = mKind.mMaximum;
        FillOutputValue(context, parameter, mInitial);
    }

    const char* mName;
    const OutputKind& mKind;
    HostValue mMinimum;
    HostValue mMaximum;
    HostValue mInitial;  // a string in it goes over to the host with the definition
};

HostError AddOutput(const HostContext* context, const ActorInfo* info, std::uint32_t id,
                    const OutputDefinition& output)
{
    return context->mCallbacks->AddProperty(info->mHostActor, kPropertyOutput, id, 0, output.mName,
                                            0, output.mKind.mFirstFlags, output.mKind.mSecondFlags,
                                            0, &output.mMinimum, &output.mMaximum, &output.mInitial,
                                            0, 0, 0);
}

HostError ChangeOutput(const HostContext* context, const ActorInfo* info, std::uint16_t number,
                       const OutputDefinition& output)
{
    return context->mCallbacks->ChangeProperty(
        info->mHostActor, 0, kPropertyOutput, number, output.mName, output.mKind.mFirstFlags,
        output.mKind.mSecondFlags, &output.mMinimum, &output.mMaximum, &output.mMinimum,
        &output.mMaximum, &output.mInitial);
}

// Gives how many dynamic outputs are left: no more than wanted, unless the watch ended it.
std::size_t RemoveSurplus(const HostContext* context, const ActorInfo* info,
                          const RecordWatch& watch, std::size_t wanted)
{
    // The count that a host gives is believed as far as outputs can have numbers at all.
    const std::int64_t count =
        std::int64_t{CountOutputs(context, info)} - kFixedOutputPropertyCount;
    std::size_t existing =
        ReachableOutputs(static_cast<std::size_t>(std::max<std::int64_t>(count, 0)));
    for (; existing > wanted && watch.OutputsStand(); --existing) {
        const HostError err = context->mCallbacks->RemoveProperty(info->mHostActor, kPropertyOutput,
                                                                  OutputNumber(existing - 1));
        Check(context, err == kQuendalNoError, "err == noErr", __LINE__);
    }
    return existing;
}

// Ends early once the watch says that the outputs aren't this pass's to change any more.
void BringInLine(const HostContext* context, const ActorInfo* info, const RecordWatch& watch,
                 const std::vector<Parameter>& params)
{
    const std::size_t wanted = ReachableOutputs(params.size());
    const std::size_t existing = RemoveSurplus(context, info, watch, wanted);

    for (std::size_t k = 0; k < wanted && watch.OutputsStand(); ++k) {
        OutputDefinition output(context, params[k]);
        // Made for an output that keeps its id too: an index out of range is always reported.
        const std::uint32_t id = MakeTwoCharId(context, kIdBase, static_cast<std::int32_t>(k) + 1);
        if (!watch.OutputsStand()) {
            ReleaseOutputValue(context, output.mInitial);
            return;
        }
        const HostError err = k < existing ? ChangeOutput(context, info, OutputNumber(k), output)
                                           : AddOutput(context, info, id, output);
        Check(context, err == kQuendalNoError, "err == noErr", __LINE__);
    }
}

std::vector<Parameter> CapturesOf(NPattern::Pattern& ioPattern)
{
    try {
        std::vector<Parameter> params;
        ioPattern.CollectParameters(params);
        return params;
    } catch (...) {
        // The outputs stay another string's: nothing may be published on them.
        ioPattern.Clear();
        throw;
    }
}

constexpr std::int32_t kTwoCharMax = 26 * 26;

// A range of indexes and how its two characters count: from mFirst on, mBase to a place.
struct IndexRange {
    std::int32_t mStart;
    std::int32_t mEnd;  // not included
    char mFirst;
    std::int32_t mBase;
};

constexpr std::int32_t kLetterStart = 100;
constexpr IndexRange kIndexRanges[] = {
    {0, kLetterStart, '0', 10},
    {kLetterStart, kLetterStart + kTwoCharMax, 'A', 26},
    {kLetterStart + kTwoCharMax, kLetterStart + 2 * kTwoCharMax, 'a', 26},
};

}  // namespace

void FillOutputValue(const HostContext* context, const Parameter& parameter, HostValue& outValue)
{
    switch (parameter.mType) {
        case NPattern::kTypeString:
            // The host looks at the tag before it makes the text.
            outValue.mTag = kValueString;
            outValue.mPayload = 0;
            context->mCallbacks->MakeStringValue(parameter.mStringValue.c_str(), &outValue);
            break;
        case NPattern::kTypeFloat: outValue.SetFloat(parameter.mFloatValue); break;
        default: outValue.SetInteger(parameter.mIntValue); break;
    }
}

void ReleaseOutputValue(const HostContext* context, HostValue& ioValue)
{
    if (ioValue.mTag == kValueString) context->mCallbacks->ReleaseStringValue(&ioValue);
}

std::int32_t CountOutputs(const HostContext* context, const ActorInfo* info)
{
    std::int32_t propCount = 0;
    const HostError err =
        context->mCallbacks->GetPropertyCount(info->mHostActor, kPropertyOutput, &propCount);
    Check(context, err == kQuendalNoError && propCount >= kFixedOutputPropertyCount,
          "err == kQuendalNoError && propCount >= kFixedOutputPropertyCount", __LINE__);
    return propCount;
}

bool RebuildOutputs(const HostContext* context, const ActorInfo* info)
{
    ++info->mActorDataPtr->mRebuilds;
    // From inside a pass nothing is touched: the host may be in the middle of an output's removal.
    if (info->mActorDataPtr->mRebuilding) return false;
    bool again = true;
    while (again) {
        ParserData& data = *info->mActorDataPtr;
        const std::vector<Parameter> params = CapturesOf(data.mPattern);
        const RecordWatch watch(info);
        data.mRebuilding = true;
        BringInLine(context, info, watch, params);
        if (watch.Record() == nullptr) return false;
        data.mRebuilding = false;
        again = !watch.OutputsStand();
    }
    return true;
}

std::uint32_t MakeTwoCharId(const HostContext* context, const char* inRateBase,
                            std::int32_t inIndex)
{
    Check(context, inRateBase[0] != 0 && inRateBase[1] != 0,
          "inRateBase[0] != 0 && inRateBase[1] != 0", __LINE__);
    // Lower than what the ranges span: an id from there on is given, but not promised.
    Check(context, inIndex >= 0 && inIndex < kTwoCharMax * 2,
          "inIndex >= 0 && inIndex < kTwoCharMax * 2", __LINE__);

    const auto byteOf = [](std::int32_t c) { return static_cast<std::uint32_t>(c) & 0xFF; };
    std::uint32_t id = byteOf(inRateBase[0]) << 24;
    // An empty base has no second character to read.
    if (inRateBase[0] != 0) id |= byteOf(inRateBase[1]) << 16;

    const auto* const range = std::find_if(
        std::begin(kIndexRanges), std::end(kIndexRanges),
        [inIndex](const auto& row) { return inIndex >= row.mStart && inIndex < row.mEnd; });
    if (!Check(context, range != std::end(kIndexRanges), "false", __LINE__)) return id;

    const std::int32_t indexOffset = inIndex - range->mStart;
    Check(context, indexOffset >= 0 && indexOffset < kTwoCharMax,
          "indexOffset >= 0 && indexOffset < kTwoCharMax", __LINE__);
    return id | byteOf(range->mFirst + indexOffset / range->mBase) << 8 |
           byteOf(range->mFirst + indexOffset % range->mBase);
}

}  // namespace NActor
