#include "tools/output/suggestion_printer.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <vector>

#include "Common/Explain/byte_text.h"
#include "tools/output/json_text.h"

namespace NSift {

using NExplain::CountOf;
using NSuggest::OutputRange;
using NSuggest::Report;
using NSuggest::Suggestion;

namespace {

constexpr std::size_t kLongestExample = 60;  // columns

std::string TypeWord(NPattern::ParameterType type)
{
    switch (type) {
        case NPattern::kTypeString: return "string";
        case NPattern::kTypeFloat: return "float";
        default: return "integer";
    }
}

std::string NumberText(double number)
{
    char digits[32];
    const auto [end, error] = std::to_chars(digits, digits + sizeof digits, number);
    return {digits, error == std::errc() ? end : digits};
}

// Returns the values that were seen: -3 to 23.5; N, S; 3 to 17 bytes.
std::string RangeText(const OutputRange& output)
{
    if (output.mType != NPattern::kTypeString) {
        const std::string least = NumberText(output.mLeast);
        return output.mLeast == output.mGreatest ? least
                                                 : least + " to " + NumberText(output.mGreatest);
    }
    std::string texts;
    for (const std::string& text : output.mTexts) {
        texts += (texts.empty() ? "" : ", ") + NExplain::AlwaysQuoted(text);
    }
    if (!texts.empty()) return texts;
    const std::string longest = CountOf(output.mLongest, "byte");
    return output.mShortest == output.mLongest
               ? longest
               : std::to_string(output.mShortest) + " to " + longest;
}

void PrintSuggestion(std::ostream& stream, const Suggestion& suggestion, std::size_t messages,
                     const Palette& palette)
{
    stream << palette.Paint(Role::kName, suggestion.mPattern) << "\n  matches "
           << suggestion.mMatched << " of " << CountOf(messages, "message") << '\n';
    std::size_t width = 0;
    for (const OutputRange& output : suggestion.mOutputs) {
        width = std::max(width, output.mName.size());
    }
    for (const OutputRange& output : suggestion.mOutputs) {
        std::string row = output.mName;
        row.resize(width + 2, ' ');
        row += TypeWord(output.mType);
        row.resize(width + 11, ' ');
        stream << "  " << row << RangeText(output) << '\n';
    }
    for (const std::string& note : suggestion.mNotes) {
        stream << palette.Paint(Role::kAside, "  note: " + note) << '\n';
    }
    stream << '\n';
}

Json OutputJson(const OutputRange& output)
{
    Json json{{"name", output.mName}, {"value", TypeWord(output.mType)}};
    if (output.mType != NPattern::kTypeString) {
        const auto number = [&](double value) {
            if (!std::isfinite(value)) return Json(NumberText(value));
            return output.mType == NPattern::kTypeFloat ? Json(value)
                                                        : Json(static_cast<std::int64_t>(value));
        };
        json.update({{"least", number(output.mLeast)}, {"greatest", number(output.mGreatest)}});
        return json;
    }
    json.update({{"shortest", output.mShortest}, {"longest", output.mLongest}});
    if (output.mTexts.empty()) return json;
    json["texts"] = Json::array();
    for (const std::string& text : output.mTexts) json["texts"].push_back(TextJson(text));
    return json;
}

}  // namespace

void PrintSuggestions(std::ostream& stream, const Report& report,
                      std::optional<std::uint8_t> eomChar, const Palette& palette)
{
    if (report.mMessages == 0) {
        stream << "There are no messages to learn from.\n";
        return;
    }
    if (!eomChar) {
        stream << "No end of the messages was found, so they are taken for one; -e names it.\n\n";
    } else if (*eomChar == 0) {
        stream << "Messages end with a byte 00 or where a device pauses: eom_char is 0.\n\n";
    } else {
        stream << "Messages end with " << NExplain::NameOfByte(*eomChar) << ": eom_char is "
               << unsigned{*eomChar} << ".\n\n";
    }
    if (!report.mHeadings.empty()) {
        stream << "The first message names the fields; it isn't counted.\n\n";
    }
    for (const Suggestion& suggestion : report.mSuggestions) {
        PrintSuggestion(stream, suggestion, report.mMessages, palette);
    }
    if (report.mEmpty != 0) {
        stream << CountOf(report.mEmpty, "message") << " of only white space not counted.\n";
    }
    if (report.mLeftOut != 0) {
        stream << CountOf(report.mLeftOut, "rarer kind") << " of message left out.\n";
    }
    if (report.mUnmatched == 0) {
        stream << (report.mSuggestions.size() > 1 ? "Every message matches one of these.\n"
                                                  : "Every message matches.\n");
        return;
    }
    std::string example = NExplain::Quoted(report.mExample);
    if (example.size() > kLongestExample) example.replace(kLongestExample, example.npos, "...");
    stream << (report.mSuggestions.empty() ? "No parsing string was found for " : "No match for ")
           << CountOf(report.mUnmatched, "message") << ", the first of them: " << example << '\n';
}

void PrintSuggestionsAsJson(std::ostream& stream, const Report& report,
                            std::optional<std::uint8_t> eomChar)
{
    for (const Suggestion& suggestion : report.mSuggestions) {
        Json outputs = Json::array();
        for (const OutputRange& output : suggestion.mOutputs) outputs.push_back(OutputJson(output));
        const Json line{{"type", "suggestion"},         {"pattern", suggestion.mPattern},
                        {"messages", report.mMessages}, {"matched", suggestion.mMatched},
                        {"outputs", outputs},           {"notes", suggestion.mNotes}};
        stream << line.dump() << '\n';
    }
    Json summary{{"type", "summary"},
                 {"messages", report.mMessages},
                 {"matched", report.mMessages - report.mUnmatched},
                 {"missed", report.mUnmatched},
                 {"eom_char", eomChar ? Json(*eomChar) : Json()}};
    if (report.mEmpty != 0) summary["blank"] = report.mEmpty;
    if (report.mLeftOut != 0) summary["kinds_left_out"] = report.mLeftOut;
    if (!report.mHeadings.empty()) summary["headings"] = report.mHeadings;
    if (report.mUnmatched != 0) summary["example"] = TextJson(report.mExample);
    stream << summary.dump() << '\n';
}

}  // namespace NSift
