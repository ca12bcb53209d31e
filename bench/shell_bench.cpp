// What the shell adds to the engine: a delivery of a mebibyte of messages to an instance, beside a
// plain loop of the engine over the same messages. Packets are missing: they hold NULs, which end a
// delivery.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "Common/Pattern/pattern_element.h"
#include "actor/message_cutter.h"
#include "counting_host.h"
#include "registration.h"
#include "workloads.h"

namespace NBench {

namespace {

using Message = MessageSet::Message;

constexpr std::size_t kDeliverySize = 1 << 20;

MessageSet MakeDelivery(const Workload& workload)
{
    constexpr std::size_t kSample = 1000;
    const std::size_t sampleSize = MakeMessages(workload, kSample, '\n').mBuffer.size();
    return MakeMessages(workload, kDeliverySize * kSample / sampleSize, '\n');
}

// The messages that are cut where nothing but the limit ends them.
std::vector<Message> CutAtLimit(const std::string& text)
{
    std::vector<Message> messages;
    for (std::size_t i = 0; i + NActor::kMessageLimit < text.size(); i += NActor::kMessageLimit + 1)
        messages.push_back({text.data() + i, NActor::kMessageLimit});
    return messages;
}

// Gives how many values were captured.
std::size_t RunEngine(const std::vector<Message>& messages, NPattern::Pattern& ioPattern,
                      NPattern::CapturedParameters& ioParameters, std::size_t& outMatched)
{
    std::size_t values = 0;
    outMatched = 0;
    for (const Message& message : messages) {
        const auto* const data = reinterpret_cast<const NPattern::Byte*>(message.mText);
        if (ioPattern.Match(data, message.mLength) == nullptr) continue;
        ioPattern.CollectParameters(ioParameters);
        benchmark::ClobberMemory();
        values += ioParameters.Entries().size();
        ++outMatched;
    }
    return values;
}

void MeasureEngine(benchmark::State& state, const Workload& workload,
                   const std::vector<Message>& messages)
{
    NPattern::Pattern pattern;
    pattern.SetPatternString(workload.mParsingString);
    NPattern::CapturedParameters parameters;
    std::size_t matched = 0;
    std::size_t values = 0;
    while (state.KeepRunning()) values = RunEngine(messages, pattern, parameters, matched);
    state.counters["messages"] = static_cast<double>(messages.size());
    state.counters["values"] = static_cast<double>(values);
    state.counters["matched"] = static_cast<double>(matched);
}

// values: what the host must be given by each delivery, or the figure means nothing.
void MeasureShell(benchmark::State& state, const Workload& workload, const std::string& delivery,
                  char eomChar, std::size_t values)
{
    CountingHost host;
    host.SetParsingString(workload.mParsingString);
    host.SetEomChar(eomChar);
    std::size_t deliveries = 0;
    while (state.KeepRunning()) {
        host.Deliver(delivery);
        ++deliveries;
    }
    if (host.SetValues() != deliveries * values) state.SkipWithError("other values than expected");
}

// The same delivery, cut at its line ends or at the limit of length alone.
void AddWorkload(const Workload& workload, bool cutAtLimit)
{
    const auto set = std::make_shared<MessageSet>(MakeDelivery(workload));
    if (cutAtLimit) set->mMessages = CutAtLimit(set->mBuffer);
    const char eomChar = cutAtLimit ? '\x01' : '\n';

    NPattern::Pattern pattern;
    pattern.SetPatternString(workload.mParsingString);
    NPattern::CapturedParameters parameters;
    std::size_t matched = 0;
    const std::size_t captures = RunEngine(set->mMessages, pattern, parameters, matched);

    const std::string name = std::string(workload.mName) + (cutAtLimit ? "/limit/" : "/lines/");
    benchmark::RegisterBenchmark((name + "engine").c_str(), [&workload, set](auto& state) {
        MeasureEngine(state, workload, set->mMessages);
    });
    benchmark::RegisterBenchmark((name + "shell").c_str(),
                                 [&workload, delivery = CountingHost::TextValue(set->mBuffer),
                                  eomChar, values = captures + matched](auto& state) {
                                     MeasureShell(state, workload, delivery, eomChar, values);
                                 });
}

}  // namespace

void RegisterBenchmarks()
{
    for (const Workload& workload : kWorkloads) {
        if (&workload == &kWorkloads[kPacket]) continue;
        AddWorkload(workload, false);
        AddWorkload(workload, true);
    }
}

}  // namespace NBench
