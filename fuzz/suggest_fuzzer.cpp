// Fuzzes the suggestions. The first byte of an input is the end-of-message character, or 0 to find
// it; the rest is what a device sends.

#include <algorithm>
#include <string_view>
#include <vector>

#include "Common/Explain/cautions.h"
#include "Common/Pattern/pattern.h"
#include "Common/Suggest/end_of_message.h"
#include "Common/Suggest/suggester.h"
#include "fuzzer.h"
#include "tests/pattern/engine_support.h"

using NSuggest::Suggester;
using NSuggest::Suggestion;

namespace {

constexpr int kMostPasses = 10;
constexpr std::size_t kMostSuggestions = 20;
constexpr std::size_t kLongestMessage = 2048;

bool IsBlank(std::string_view message)
{
    return std::all_of(message.begin(), message.end(),
                       [](char c) { return NPattern::IsSpace(static_cast<NPattern::Byte>(c)); });
}

// hasHeadings: the first message that isn't blank is not counted.
std::size_t CountMatches(const Suggestion& suggestion,
                         const std::vector<std::string_view>& messages, bool hasHeadings)
{
    NPattern::Pattern pattern;
    pattern.SetPatternString(suggestion.mPattern);
    std::size_t matches = 0;
    for (std::string_view message : messages) {
        message = message.substr(0, std::min(message.find('\0'), kLongestMessage));
        if (IsBlank(message)) continue;
        if (hasHeadings) {
            hasHeadings = false;
            continue;
        }
        const HeapMessage exact(message);
        if (pattern.Match(exact.Data(), exact.Length()) != nullptr) ++matches;
    }
    return matches;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    const auto eom = data[0] != 0 ? std::optional(data[0]) : NSuggest::FindEndOfMessage(text);
    const std::vector<std::string_view> messages = NSuggest::MessagesIn(text, eom);
    Suggester suggester({"first", "second"});
    int passes = 0;
    do {
        Expect(++passes < kMostPasses, "the passes end");
        for (const std::string_view message : messages) suggester.Add(message);
    } while (suggester.NextPass());

    const NSuggest::Report& report = suggester.Result();
    Expect(report.mSuggestions.size() < kMostSuggestions, "there are few suggestions");
    Expect(report.mUnmatched <= report.mMessages, "no message is counted twice");
    for (const Suggestion& suggestion : report.mSuggestions) {
        Expect(NExplain::FindCautions(NExplain::TakeApart(suggestion.mPattern)).empty(),
               "a suggestion has no caution");
        Expect(suggestion.mMatched != 0 &&
                   suggestion.mMatched <=
                       CountMatches(suggestion, messages, !report.mHeadings.empty()),
               "a suggestion matches at least as many messages as it says");
        for (const NSuggest::OutputRange& output : suggestion.mOutputs) {
            Expect(NSuggest::IsName(output.mName), "each output has a valid name");
        }
    }
    return 0;
}
