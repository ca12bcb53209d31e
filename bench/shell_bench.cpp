// What the shell costs in addition to the engine: deliveries to an instance, compared with a plain
// loop of the engine over the same messages. Packets are left out, because they contain NULs, which
// end a delivery.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "Common/Pattern/pattern.h"
#include "actor/message_cutter.h"
#include "allocations.h"
#include "counting_host.h"
#include "registration.h"
#include "workloads.h"

namespace NBench {

namespace {

constexpr std::size_t kLongDelivery = 1 << 20;
constexpr char kNoEomChar = '\x01';  // in no message

// The deliveries of one measurement.
struct Deliveries {
    Deliveries(const Workload& workload, std::vector<std::string> values, char eomChar);
    Deliveries(const Deliveries&) = delete;
    Deliveries& operator=(const Deliveries&) = delete;

    const Workload& mWorkload;
    std::vector<std::string> mValues;  // results of CountingHost::TextValue
    char mEomChar;
    std::vector<Message> mMessages;  // in mValues
};

// Appends the messages of a delivery, cut as the shell cuts it.
void Cut(const std::string& value, char eomChar, std::vector<Message>& ioMessages)
{
    constexpr std::size_t kLimit = NActor::kMessageLimit;
    std::size_t start = CountingHost::TextValue("").size();
    while (start < value.size()) {
        const std::size_t length = std::min(value.find(eomChar, start) - start, kLimit);
        if (start + length < value.size()) {
            ioMessages.push_back({value.data() + start, static_cast<std::uint32_t>(length)});
        }
        start += length + 1;
    }
}

Deliveries::Deliveries(const Workload& workload, std::vector<std::string> values, char eomChar)
    : mWorkload(workload), mValues(std::move(values)), mEomChar(eomChar)
{
    for (const std::string& value : mValues) Cut(value, eomChar, mMessages);
}

// What matched, over all messages.
struct Matched {
    std::size_t mMessages = 0;
    std::size_t mValues = 0;
};

class Engine {
  public:
    explicit Engine(const Workload& workload)
    {
        mPattern.SetPatternString(workload.mParsingString);
    }

    Matched Run(const std::vector<Message>& messages)
    {
        Matched matched;
        for (const Message& message : messages) {
            const auto* const data = reinterpret_cast<const NPattern::Byte*>(message.mText);
            if (mPattern.Match(data, message.mLength, mCaptured) == nullptr) continue;
            benchmark::ClobberMemory();
            ++matched.mMessages;
            matched.mValues += mCaptured.Entries().size();
        }
        return matched;
    }

  private:
    NPattern::Pattern mPattern;
    NPattern::CapturedParameters mCaptured;
};

void MeasureEngine(benchmark::State& state, const Deliveries& deliveries)
{
    Engine engine(deliveries.mWorkload);
    Matched matched;
    while (state.KeepRunning()) matched = engine.Run(deliveries.mMessages);
    state.counters["messages"] = static_cast<double>(deliveries.mMessages.size());
    state.counters["values"] = static_cast<double>(matched.mValues);
}

void DeliverAll(CountingHost& ioHost, const Deliveries& deliveries)
{
    for (const std::string& value : deliveries.mValues) ioHost.Deliver(value);
}

// One iteration makes all deliveries. It fails unless each captured value and each trigger is set.
void MeasureShell(benchmark::State& state, const Deliveries& deliveries)
{
    CountingHost host;
    host.SetParsingString(deliveries.mWorkload.mParsingString);
    host.SetEomChar(deliveries.mEomChar);
    DeliverAll(host, deliveries);  // allocates all memory that is reused

    const std::size_t before = AllocationCount();
    while (state.KeepRunning()) DeliverAll(host, deliveries);
    const auto allocations = static_cast<double>(AllocationCount() - before);
    const auto runs = static_cast<std::size_t>(state.iterations());
    state.counters["allocations"] =
        allocations / static_cast<double>(runs * deliveries.mValues.size());

    const Matched expected = Engine(deliveries.mWorkload).Run(deliveries.mMessages);
    if (host.SetValues() != (runs + 1) * (expected.mMessages + expected.mValues)) {
        state.SkipWithError("unexpected number of values");
    }
}

// kind: what is delivered. The benchmarks are named workload/kind/engine and workload/kind/shell.
void Add(const char* kind, const std::shared_ptr<const Deliveries>& deliveries)
{
    const std::string name = std::string(deliveries->mWorkload.mName) + "/" + kind;
    benchmark::RegisterBenchmark((name + "/engine").c_str(),
                                 [deliveries](auto& state) { MeasureEngine(state, *deliveries); });
    benchmark::RegisterBenchmark((name + "/shell").c_str(),
                                 [deliveries](auto& state) { MeasureShell(state, *deliveries); });
}

std::vector<std::string> OneByOne(const MessageSet& set)
{
    std::vector<std::string> values;
    for (const Message& message : set.mMessages) {
        values.push_back(CountingHost::TextValue({message.mText, message.mLength + 1}));
    }
    return values;
}

// Returns messages, each with a line end, of about kLongDelivery bytes.
std::string LongText(const Workload& workload)
{
    constexpr std::size_t kSample = 1000;
    const std::size_t sampleSize = MakeMessages(workload, kSample, '\n').mBuffer.size();
    return MakeMessages(workload, kLongDelivery * kSample / sampleSize, '\n').mBuffer;
}

void AddWorkload(const Workload& workload, bool instant)
{
    const auto add = [&workload](const char* kind, std::vector<std::string> values, char eomChar) {
        Add(kind, std::make_shared<const Deliveries>(workload, std::move(values), eomChar));
    };
    add("single", OneByOne(MakeMessages(workload, MessageCount(instant), '\n')), '\n');
    const std::string longText = LongText(workload);
    add("lines", {CountingHost::TextValue(longText)}, '\n');
    add("limit", {CountingHost::TextValue(longText)}, kNoEomChar);
}

}  // namespace

void RegisterBenchmarks(bool instant)
{
    for (const Workload& workload : kWorkloads) {
        if (&workload != &kWorkloads[kPacket]) AddWorkload(workload, instant);
    }
}

}  // namespace NBench
