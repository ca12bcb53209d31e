// How time grows with size. Each benchmark is one point of a curve and is named curve/size.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>
#include <vector>

#include "Common/Pattern/pattern.h"
#include "counting_host.h"
#include "registration.h"

namespace NBench {

namespace {

std::string Repeated(const std::string& text, std::size_t count)
{
    std::string result;
    result.reserve(text.size() * count);
    while (count-- > 0) result += text;
    return result;
}

void MeasureMatching(benchmark::State& state, const std::string& parsingString,
                     const std::string& message)
{
    NPattern::Pattern pattern;
    pattern.SetPatternString(parsingString);
    NPattern::CapturedParameters parameters;
    const auto* const data = reinterpret_cast<const NPattern::Byte*>(message.data());
    while (state.KeepRunning()) {
        const auto length = static_cast<std::uint32_t>(message.size());
        if (pattern.Match(data, length, parameters) == nullptr) {
            state.SkipWithError("no match");
            break;
        }
        benchmark::ClobberMemory();
    }
}

void MeasureCompiling(benchmark::State& state, const std::string& parsingString, bool good)
{
    while (state.KeepRunning()) {
        NPattern::Pattern pattern;
        bool compiled = true;
        try {
            pattern.SetPatternString(parsingString);
        } catch (const NPattern::PatternException&) {
            compiled = false;
        }
        if (compiled != good) {
            state.SkipWithError("unexpected result of compiling");
            break;
        }
    }
}

// A message of size bytes, taken by a run of letters.
void MessageLength(benchmark::State& state, std::size_t size)
{
    MeasureMatching(state, "text:string=letters", std::string(size, 'a'));
}

void LineLength(benchmark::State& state, std::size_t size)
{
    MeasureMatching(state, "text:string=eol", std::string(size, 'a'));
}

// size elements that each take one byte and capture nothing.
void Elements(benchmark::State& state, std::size_t size)
{
    MeasureMatching(state, Repeated("byte ", size), std::string(size, 'a'));
}

// Captures of one digit each, so that the message stays below its limit of length.
void Captures(benchmark::State& state, std::size_t size)
{
    MeasureMatching(state, Repeated("n:integer=1# ", size), Repeated("7", size));
}

const std::string kDelivered = "T=23.5 H=41 P=1013\n";

// size messages in one delivery.
void Messages(benchmark::State& state, std::size_t size)
{
    CountingHost host;
    host.SetParsingString("'T=' t:float=.# 'H=' h:integer=# 'P=' p:integer=#");
    host.SetEomChar('\n');
    const std::string delivery = CountingHost::TextValue(Repeated(kDelivered, size));
    while (state.KeepRunning()) host.Deliver(delivery);
    constexpr std::size_t kCaptures = 3;
    const auto deliveries = static_cast<std::size_t>(state.iterations());
    if (host.SetValues() != deliveries * size * (kCaptures + 1)) {
        state.SkipWithError("unexpected number of values");
    }
}

// size: in bytes.
void Delivery(benchmark::State& state, std::size_t size)
{
    Messages(state, size / kDelivered.size());
}

// Returns a parsing string of exactly size bytes.
std::string ParsingStringOf(std::size_t size)
{
    const std::string piece = "'a,' # ";
    std::string text = Repeated(piece, size / piece.size());
    return text + std::string(size - text.size(), ' ');
}

void Compile(benchmark::State& state, std::size_t size)
{
    MeasureCompiling(state, ParsingStringOf(size), true);
}

// The last byte is a closing bracket without an opening one.
void FailingCompile(benchmark::State& state, std::size_t size)
{
    MeasureCompiling(state, ParsingStringOf(size - 1) + "]", false);
}

void Outputs(benchmark::State& state, std::size_t size)
{
    CountingHost host;
    const std::string parsingString = Repeated("n:integer=3# ", size);
    while (state.KeepRunning()) host.SetParsingString(parsingString);
}

struct Curve {
    const char* mName;
    void (*mMeasure)(benchmark::State& state, std::size_t size);
    std::vector<std::size_t> mSizes;
};

// A message has at most 2048 bytes, and 1352 outputs have ids, so the curves of one message and of
// captures end there.
const std::vector<Curve> kCurves = {
    {"message", MessageLength, {16, 32, 64, 128, 256, 512, 1024, 1536, 2048}},
    {"line", LineLength, {16, 32, 64, 128, 256, 512, 1024, 1536, 2048}},
    {"elements", Elements, {1, 3, 10, 30, 100, 300, 600, 1000, 2048}},
    {"captures", Captures, {1, 3, 10, 30, 100, 300, 600, 1000, 1350}},
    {"messages", Messages, {1, 3, 10, 30, 100, 300, 1000, 3000, 10000, 30000, 100000}},
    {"delivery",
     Delivery,
     {1 << 10, 1 << 12, 1 << 14, 1 << 16, 1 << 18, 1 << 20, 1 << 22, 1 << 24, 1 << 26}},
    {"compile", Compile, {10, 32, 100, 316, 1000, 3162, 10000, 31623, 100000, 316228, 1 << 20}},
    {"failing",
     FailingCompile,
     {10, 32, 100, 316, 1000, 3162, 10000, 31623, 100000, 316228, 1 << 20}},
    {"outputs", Outputs, {1, 3, 10, 30, 100, 300, 600, 1000, 1350}},
};

}  // namespace

void RegisterBenchmarks(bool /*instant*/)
{
    for (const Curve& curve : kCurves) {
        for (const std::size_t size : curve.mSizes) {
            const std::string name = std::string(curve.mName) + "/" + std::to_string(size);
            benchmark::RegisterBenchmark(name.c_str(), [measure = curve.mMeasure, size](
                                                           auto& state) { measure(state, size); });
        }
    }
}

}  // namespace NBench
