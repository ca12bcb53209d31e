// Fuzzes the engine against the reference. An input is one of the fuzzer of the engine or the
// choices of an InputMaker.

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

#include "Common/Explain/byte_text.h"
#include "comparison.h"
#include "fuzzer.h"
#include "input_maker.h"

namespace {

// The messages are all beginnings of one, up to this length, and the whole.
constexpr std::size_t kLongestBeginning = 16;

void ExpectAgreement(const char* difference, const std::string& parseString,
                     std::string_view message)
{
    if (difference == nullptr) return;
    std::fprintf(stderr, "Parsing string %s, message %s: they differ in this:\n",
                 NExplain::AlwaysQuoted(parseString).c_str(),
                 NExplain::AlwaysQuoted(message).c_str());
    Expect(false, difference);
}

void Run(const std::string& parseString, std::string_view message)
{
    Comparison comparison(parseString);
    ExpectAgreement(comparison.Difference(), parseString, "");
    if (!comparison.Compiles()) return;
    const auto match = [&](std::string_view text) {
        ExpectAgreement(comparison.MatchDifference(HeapMessage(text)), parseString, text);
    };
    for (std::size_t length = 0; length < std::min(kLongestBeginning, message.size()); ++length) {
        match(message.substr(0, length));
    }
    match(message);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const EngineInput input = InputOf({reinterpret_cast<const char*>(data), size});
    Run(input.mParseString, input.mMessage);
    return 0;
}
