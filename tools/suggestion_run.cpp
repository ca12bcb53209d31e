#include "tools/suggestion_run.h"

#include <algorithm>
#include <iostream>
#include <optional>

#include "Common/Explain/byte_text.h"
#include "Common/Suggest/suggester.h"
#include "tools/input/sample_input.h"
#include "tools/message_run.h"
#include "tools/output/palette.h"
#include "tools/output/suggestion_printer.h"

namespace NSift {

namespace {

NSuggest::Report Suggest(SampleInput& input, const std::vector<std::string>& names)
{
    NSuggest::Suggester suggester(names);
    do {
        input.ForEach([&suggester](std::string_view message) { suggester.Add(message); });
    } while (suggester.NextPass());
    return suggester.Result();
}

void Warn(const SampleInput& input)
{
    if (input.IsOpen()) {
        std::cerr << "sift: no end of the messages was found: pass the character that ends each "
                     "one with -e; with -e 0, a message ends where a device pauses\n";
    }
    if (input.IsInterrupted())
        std::cerr << "sift: interrupted: only the messages up to then were used\n";
    if (input.IsPart()) std::cerr << "sift: only the first messages were used, 16 MiB of them\n";
    if (input.Lost() != 0) {
        std::cerr << "sift: " << NExplain::CountOf(input.Lost(), "message")
                  << " with a byte 00 left out: the host's text ends there\n";
    }
}

}  // namespace

int SuggestPatterns(const Options& options)
{
    const auto eomChar = options.mFindsEom ? std::nullopt : std::optional(options.mEomChar);
    SampleInput input(options.mFiles, eomChar, options.mInputForm, options.mReading);
    const bool isGood = input.Read();
    const NSuggest::Report report = Suggest(input, options.mNames);
    Warn(input);
    if (options.mFormat == Format::kJson) {
        PrintSuggestionsAsJson(std::cout, report, input.FoundEomChar());
    } else {
        PrintSuggestions(std::cout, report, input.FoundEomChar(), Palette(stdout));
    }
    return EndRun(!isGood, !report.mSuggestions.empty());
}

std::string SuggestedPattern(const Options& options)
{
    SampleInput input(options.mFiles, options.mEomChar, options.mInputForm, options.mReading);
    input.Read();
    const NSuggest::Report report = Suggest(input, options.mNames);
    if (report.mSuggestions.empty()) return "";
    const auto hasOutputs = [](const NSuggest::Suggestion& s) { return !s.mOutputs.empty(); };
    const auto& all = report.mSuggestions;
    const auto found = std::find_if(all.begin(), all.end(), hasOutputs);
    const NSuggest::Suggestion& first = found != all.end() ? *found : all.front();
    std::cerr << "sift: the parsing string to edit is a suggestion that matches " << first.mMatched
              << " of " << NExplain::CountOf(report.mMessages, "message") << '\n';
    return first.mPattern;
}

}  // namespace NSift
