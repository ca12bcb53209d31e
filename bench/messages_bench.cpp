// Time to match a message and to compile its pattern: the engine against its peers, for each
// workload. If the values of a peer differ from the engine's for any message, the program ends.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "allocations.h"
#include "peers.h"
#include "plain_parsers.h"
#include "registration.h"
#include "workloads.h"

namespace NBench {

namespace {

// Parts of the regular expressions. They match what the engine matches in messages that a device
// sends. Beyond that, they are written for speed: there is only one way to match the same bytes,
// because RE2 is fast only then.
const std::string kFloat = R"(\s*([-+]?[0-9]+(?:\.[0-9]*)?)\s*)";
const std::string kInteger = R"(\s*([-+]?[0-9]+)\s*)";
const std::string kHexByte = R"(\s+([0-9A-Fa-f]{1,2}))";

const std::array<std::string, kWorkloadCount> kRegexes = {
    "T=" + kFloat + "H=" + kInteger + "P=" + kInteger,
    R"(\$GPGGA,)" + kFloat + "," + kFloat + R"(,\s*([NS])\s*,)" + kFloat + R"(,\s*([EW])\s*,)" +
        kInteger + "," + kInteger + "," + kFloat + "," + kFloat + ",M,",
    R"(ID\s*([0-9A-Fa-f]+)\s+DATA)" + kHexByte + kHexByte + kHexByte,
    R"(/[sS][eE][tT]\s*"\s*([A-Za-z0-9_]+)\s*"\s*[aA][tT])" + kFloat + R"((\S[^\r\n]*[\r\n]*))",
    R"(\xAA\x55([\s\S]{4})([\s\S]{2}))",
    R"(\$GPHDT,)" + kFloat + R"(,T\*([0-9A-Fa-f]{1,2}))",
};

template <typename Record, bool (*kParse)(const Message&, Record&)>
class PlainPeer {
  public:
    bool Parse(const Message& message) { return kParse(message, mRecord); }
    const Record& Values() const { return mRecord; }

  private:
    Record mRecord;
};

template <typename Record>
using HandPeer = PlainPeer<Record, static_cast<bool (*)(const Message&, Record&)>(ParseByHand)>;
template <typename Record>
using ScanfPeer = PlainPeer<Record, static_cast<bool (*)(const Message&, Record&)>(ParseByScanf)>;

template <typename Record, typename Peer>
void RequireSameValues(const std::string& name, const MessageSet& set, const std::string& pattern,
                       Peer& ioPeer)
{
    EnginePeer<Record> engine(pattern);
    for (const Message& message : set.mMessages) {
        const bool matched = engine.Parse(message);
        if (ioPeer.Parse(message) != matched || (matched && ioPeer.Values() != engine.Values())) {
            Fail(name + " differs from the engine for the message " +
                 std::string(message.mText, message.mLength));
        }
    }
}

template <typename Peer>
void ParseAll(const MessageSet& set, Peer& ioPeer)
{
    for (const Message& message : set.mMessages) {
        benchmark::DoNotOptimize(ioPeer.Parse(message));
        benchmark::ClobberMemory();
    }
}

// One iteration parses all messages. RequireSameValues has already checked the values and
// allocated all memory that is reused.
template <typename Peer>
void MeasureParsing(benchmark::State& state, const MessageSet& set, Peer& ioPeer)
{
    const std::size_t before = AllocationCount();
    while (state.KeepRunning()) ParseAll(set, ioPeer);
    const auto allocations = static_cast<double>(AllocationCount() - before);

    const auto messages = static_cast<double>(set.mMessages.size());
    state.counters["messages"] = messages;
    state.counters["allocations"] =
        allocations / (messages * static_cast<double>(state.iterations()));
}

template <typename Record, typename Peer, typename... Pattern>
void AddParsing(WorkloadIndex index, const char* peerName, std::shared_ptr<const MessageSet> set,
                const Pattern&... pattern)
{
    const Workload& workload = kWorkloads.at(index);
    const std::string name = std::string(workload.mName) + "/" + peerName;
    const auto peer = std::make_shared<Peer>(pattern...);
    RequireSameValues<Record>(name, *set, workload.mParsingString, *peer);
    benchmark::RegisterBenchmark(name.c_str(), [set = std::move(set), peer](auto& state) {
        MeasureParsing(state, *set, *peer);
    });
}

template <typename Peer>
void AddCompiling(WorkloadIndex index, const char* peerName, const std::string& pattern)
{
    const std::string name = std::string(kWorkloads.at(index).mName) + "/compile/" + peerName;
    benchmark::RegisterBenchmark(name.c_str(), [pattern](auto& state) {
        while (state.KeepRunning()) benchmark::DoNotOptimize(Peer(pattern));
    });
}

template <typename Record>
void AddWorkload(WorkloadIndex index, bool instant)
{
    const std::string parsingString = kWorkloads.at(index).mParsingString;
    const std::string& regex = kRegexes.at(index);
    const auto set = std::make_shared<const MessageSet>(
        MakeMessages(kWorkloads.at(index), MessageCount(instant), '\0'));

    AddParsing<Record, EnginePeer<Record>>(index, "engine", set, parsingString);
    AddParsing<Record, Pcre2Peer<Record>>(index, "pcre2", set, regex);
    AddParsing<Record, Re2Peer<Record>>(index, "re2", set, regex);
    AddParsing<Record, StdRegexPeer<Record>>(index, "regex", set, regex);
    if constexpr (!std::is_same_v<Record, PacketRecord>) {
        AddParsing<Record, ScanfPeer<Record>>(index, "sscanf", set);
    }
    AddParsing<Record, HandPeer<Record>>(index, "hand", set);

    AddCompiling<EnginePeer<Record>>(index, "engine", parsingString);
    AddCompiling<Pcre2Peer<Record>>(index, "pcre2", regex);
    AddCompiling<Re2Peer<Record>>(index, "re2", regex);
}

}  // namespace

void RegisterBenchmarks(bool instant)
{
    AddWorkload<SensorRecord>(kSensor, instant);
    AddWorkload<PositionRecord>(kPosition, instant);
    AddWorkload<HexDataRecord>(kHexData, instant);
    AddWorkload<CommandRecord>(kCommand, instant);
    AddWorkload<PacketRecord>(kPacket, instant);
    AddWorkload<HeadingRecord>(kHeading, instant);
}

}  // namespace NBench
