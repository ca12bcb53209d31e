#include "dynamic_outputs.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <vector>

#include "output_value.h"
#include "property_id.h"
#include "record_watch.h"

namespace NActor {

using NPattern::Parameter;

namespace {

constexpr char kIdBase[] = "ot";

// The part of an output's definition that follows from the type of its capture. The flags are words
// of the host's interface.
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

OutputDefinition DefinitionOf(const Parameter& parameter, const HostValue& initial)
{
    const OutputKind& kind = KindOf(parameter);
    const HostValue minimum{kind.mTag, {}, kind.mMinimum};
    const HostValue maximum{kind.mTag, {}, kind.mMaximum};
    return {
        parameter.mName.c_str(), kind.mFirstFlags, kind.mSecondFlags, minimum, maximum, initial};
}

// Returns the number of dynamic outputs that are left: no more than wanted, unless the watch ended
// the removal.
std::size_t RemoveSurplus(const HostCall& call, const RecordWatch& watch, std::size_t wanted)
{
    // The host's count is believed only as far as outputs can have numbers at all.
    const std::int64_t count = std::int64_t{CountOutputs(call)} - kFixedOutputPropertyCount;
    std::size_t existing =
        ReachableOutputs(static_cast<std::size_t>(std::max<std::int64_t>(count, 0)));
    for (; existing > wanted && watch.OutputsStand(); --existing) {
        const HostError err = call.RemoveOutput(OutputNumber(existing - 1));
        call.Check(err == kQuendalNoError, "err == noErr", __LINE__);
    }
    return existing;
}

// Redefines or adds the output at position k.
void DefineOutput(const HostCall& call, const RecordWatch& watch, std::size_t k, bool exists,
                  const Parameter& parameter)
{
    OutputValue initial(call, parameter);
    // Made also for an output that keeps its id: an index out of range is always reported.
    const std::uint32_t id = MakeTwoCharId(call, kIdBase, static_cast<std::int32_t>(k) + 1);
    if (!watch.OutputsStand()) return;
    const OutputDefinition output = DefinitionOf(parameter, initial.HandOver());
    const HostError err =
        exists ? call.ChangeOutput(OutputNumber(k), output) : call.AddOutput(id, output);
    call.Check(err == kQuendalNoError, "err == noErr", __LINE__);
}

// Ends early once the watch says that the outputs are no longer this pass's to change.
void MatchCaptures(const HostCall& call, const RecordWatch& watch)
{
    std::vector<Parameter> params;
    watch.Record()->mPattern.CollectParameters(params);
    const std::size_t wanted = ReachableOutputs(params.size());
    const std::size_t existing = RemoveSurplus(call, watch, wanted);
    for (std::size_t k = 0; k < wanted && watch.OutputsStand(); ++k) {
        DefineOutput(call, watch, k, k < existing, params[k]);
    }
}

// Marks the record during a pass. A record that has ended has no mark to clear.
class RebuildingMark {
  public:
    explicit RebuildingMark(const RecordWatch& watch) : mWatch(watch) { Set(true); }
    RebuildingMark(const RebuildingMark&) = delete;
    RebuildingMark& operator=(const RebuildingMark&) = delete;
    ~RebuildingMark() { Set(false); }

  private:
    void Set(bool rebuilding)
    {
        if (mWatch.Record() != nullptr) mWatch.Record()->mRebuilding = rebuilding;
    }

    const RecordWatch& mWatch;
};

void RunPass(const HostCall& call, const RecordWatch& watch)
{
    const RebuildingMark mark(watch);
    try {
        MatchCaptures(call, watch);
    } catch (...) {
        // The outputs may be those of another string: nothing may be published on them.
        if (watch.Record() != nullptr) watch.Record()->mPattern.Clear();
        throw;
    }
}

}  // namespace

std::int32_t CountOutputs(const HostCall& call)
{
    std::int32_t propCount = 0;
    const HostError err = call.GetOutputCount(propCount);
    call.Check(err == kQuendalNoError && propCount >= kFixedOutputPropertyCount,
               "err == kQuendalNoError && propCount >= kFixedOutputPropertyCount", __LINE__);
    return propCount;
}

bool RebuildOutputs(const HostCall& call, ParserData& ioRecord)
{
    ++ioRecord.mRebuilds;
    // Nothing is touched from inside a pass: the host may be in the middle of removing an output.
    if (ioRecord.mRebuilding) return false;
    ParserData* record = &ioRecord;
    bool outputsMatch = false;
    while (record != nullptr && !outputsMatch) {
        const RecordWatch watch(record);
        RunPass(call, watch);
        outputsMatch = watch.OutputsStand();
        record = watch.Record();
    }
    return outputsMatch;
}

}  // namespace NActor
