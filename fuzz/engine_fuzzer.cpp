// Fuzzes the engine. The first line of an input is a parsing string, the rest is a message.

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "Common/Pattern/pattern.h"
#include "Common/Pattern/pattern_element.h"
#include "engine_input.h"
#include "fuzzer.h"
#include "tests/pattern/engine_support.h"

using NPattern::Byte;
using NPattern::CapturedParameters;
using NPattern::Parameter;
using NPattern::Pattern;
using NPattern::PatternSyntaxException;

namespace {

constexpr char kGoodString[] = "n:i=#";

// Returns the result of compiling: the dump or the error. Any other exception ends the program.
std::string Outcome(const std::string& parseString)
{
    try {
        return WholeDump(NPattern::CompileElements(parseString));
    } catch (const PatternSyntaxException& error) {
        Expect(error.mPosition >= -1 &&
                   error.mPosition < static_cast<std::int64_t>(parseString.size()),
               "the position of an error is in the string or just before it");
        return error.Message();
    }
}

bool Compile(Pattern& pattern, const std::string& parseString)
{
    try {
        pattern.SetPatternString(parseString);
        return true;
    } catch (const PatternSyntaxException&) {
        return false;
    }
}

std::vector<Parameter> Captures(const Pattern& pattern)
{
    std::vector<Parameter> captures;
    pattern.CollectParameters(captures);
    return captures;
}

bool SameOutput(const Parameter& a, const Parameter& b)
{
    return a.mName == b.mName && a.mType == b.mType;
}

template <typename Same>
bool AllSame(const std::vector<Parameter>& a, const std::vector<Parameter>& b, Same same)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
}

// kept: initially contains the captures of another string. It is used for the match in one call,
// and the pattern's own captures for the match in two calls.
void CheckMatch(Pattern& pattern, const std::string& parseString, const HeapMessage& message,
                CapturedParameters& kept)
{
    const std::vector<Parameter> declared = Captures(pattern);
    std::vector<Parameter> wanted;
    const Byte* const rest =
        MatchByElements(NPattern::CompileElements(parseString), message, wanted);
    Expect(rest == nullptr || (rest >= message.Data() && rest <= message.Data() + message.Length()),
           "a match ends inside its message");
    for (int round = 0; round < 2; ++round) {
        Expect(pattern.Match(message.Data(), message.Length(), kept) == rest,
               "the program matches what the elements match, each time");
        Expect(AllSame(declared, kept.Entries(), SameOutput), "a match changes only values");
        Expect(pattern.Match(message.Data(), message.Length()) == rest,
               "a match in two calls has the same end");
        if (rest == nullptr) continue;
        Expect(AllSame(wanted, kept.Entries(), SameParameter), "and captures the same values");
        Expect(AllSame(wanted, Captures(pattern), SameParameter), "in two calls too");
    }
}

void CheckEmpty(Pattern& pattern, const HeapMessage& message)
{
    Expect(Captures(pattern).empty(), "a failed compile leaves no captures");
    Expect(pattern.Match(message.Data(), message.Length()) == nullptr,
           "a failed compile leaves a pattern that never matches");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const EngineInput input({reinterpret_cast<const char*>(data), size});
    const std::string& parseString = input.mParseString;
    const HeapMessage message(input.mMessage);

    const std::string outcome = Outcome(parseString);
    Expect(Outcome(parseString) == outcome, "a string always compiles to the same result");

    Pattern pattern;
    Expect(Compile(pattern, kGoodString), "a good string compiles");
    CapturedParameters kept;
    pattern.Match(nullptr, 0, kept);
    if (Compile(pattern, parseString)) {
        CheckMatch(pattern, parseString, message, kept);
    } else {
        CheckEmpty(pattern, message);
    }
    Expect(Compile(pattern, kGoodString), "a good string compiles after any other string");
    Expect(MatchResult(pattern, "42") == "n=42 | ", "a good string matches after any other string");
    return 0;
}
