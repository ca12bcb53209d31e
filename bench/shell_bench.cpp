// What the shell costs in addition to the engine: a delivery of 1 MiB of messages to an instance,
// compared with a plain loop of the engine over the same messages. Packets are left out, because
// they contain NULs, which end a delivery.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "Common/Pattern/pattern.h"
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

// Returns the messages of a text that only the limit of length divides.
std::vector<Message> CutAtLimit(const std::string& text)
{
    std::vector<Message> messages;
    for (std::size_t i = 0; i + NActor::kMessageLimit < text.size(); i += NActor::kMessageLimit + 1)
        messages.push_back({text.data() + i, NActor::kMessageLimit});
    return messages;
}

// Returns the number of captured values.
std::size_t RunEngine(const std::vector<Message>& messages, NPattern::Pattern& ioPattern,
                      NPattern::CapturedParameters& ioParameters, std::size_t& outMatched)
{
    std::size_t values = 0;
    outMatched = 0;
    for (const Message& message : messages) {
        const auto* const data = reinterpret_cast<const NPattern::Byte*>(message.mText);
        if (ioPattern.Match(data, message.mLength, ioParameters) == nullptr) continue;
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

// values: the number of values that each delivery must set; otherwise the benchmark fails.
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
    if (host.SetValues() != deliveries * values) state.SkipWithError("unexpected number of values");
}

// cutAtLimit: only the limit of length divides the delivery into messages, not its line ends.
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
