// Everything that is suggested for many samples of messages.

#include "tests/explain/transcript.h"

#include "Common/Explain/byte_text.h"
#include "Common/Suggest/end_of_message.h"
#include "Common/Suggest/suggester.h"

using NExplain::Quoted;

namespace {

std::string List(const std::vector<std::string>& texts)
{
    std::string list;
    for (const std::string& text : texts) list += ' ' + Quoted(text);
    return list;
}

std::string LinesOf(const NSuggest::OutputRange& output)
{
    std::ostringstream lines;
    lines << "  " << output.mName << ' ' << output.mType << ' ';
    if (output.mType == NPattern::kTypeString) {
        lines << output.mShortest << " to " << output.mLongest << " bytes" << List(output.mTexts);
    } else {
        lines << output.mLeast << " to " << output.mGreatest;
    }
    return lines.str() + '\n';
}

std::string LinesOf(const NSuggest::Report& report)
{
    std::ostringstream lines;
    for (const NSuggest::Suggestion& suggestion : report.mSuggestions) {
        lines << suggestion.mMatched << ' ' << suggestion.mPattern << '\n';
        for (const auto& output : suggestion.mOutputs) lines << LinesOf(output);
        for (const auto& note : suggestion.mNotes) lines << "  note: " << note << '\n';
    }
    lines << "of " << report.mMessages;
    if (report.mEmpty != 0) lines << ", empty " << report.mEmpty;
    if (report.mLeftOut != 0) lines << ", left out " << report.mLeftOut;
    if (report.mUnmatched != 0) {
        lines << ", unmatched " << report.mUnmatched << " as " << Quoted(report.mExample);
    }
    if (!report.mHeadings.empty()) lines << ", headings" << List(report.mHeadings);
    return lines.str() + '\n';
}

// Replaces \#, and \h and \l by the bytes of the number.
std::string Numbered(std::string text, unsigned long long number)
{
    const auto replace = [&text](std::string_view mark, const std::string& other) {
        for (std::size_t at; (at = text.find(mark)) != std::string::npos;) {
            text.replace(at, mark.size(), other);
        }
    };
    const auto escaped = [](unsigned long long byte) {
        const char c = static_cast<char>(byte);
        return "\\x" + NExplain::HexOf({&c, 1});
    };
    replace("\\#", std::to_string(number));
    replace("\\h", escaped(number >> 8U & 0xFFU));
    replace("\\l", escaped(number & 0xFFU));
    return text;
}

// Replaces \{8..11 v=\#,\} by v=8,v=9,v=10,v=11,.
std::string Expanded(std::string text)
{
    for (std::size_t begin; (begin = text.find("\\{")) != std::string::npos;) {
        const std::size_t end = text.find("\\}", begin);
        std::istringstream range(text.substr(begin + 2, end - begin - 2));
        unsigned long long first = 0, last = 0;
        range >> first;
        range.ignore(2);
        range >> last;
        range.ignore(1);
        const std::string message(std::istreambuf_iterator<char>(range), {});
        std::string messages;
        for (unsigned long long n = first; n <= last; ++n) messages += Numbered(message, n);
        text.replace(begin, end + 2 - begin, messages);
    }
    return text;
}

class Speaker {
  public:
    // input: names, separated by commas; or messages, with \p for a pause.
    std::string Say(std::string_view word, const std::string& input)
    {
        if (word == "names") {
            std::string invalid;
            std::istringstream names(input);
            for (std::string name; std::getline(names, name, ',');) {
                mNames.push_back(name);
                if (!NSuggest::IsName(name)) invalid += "no name: " + Quoted(name) + '\n';
            }
            if (!invalid.empty()) mNames.clear();
            return invalid;
        }
        const std::string expanded = Expanded(input);
        std::string_view rest = expanded;
        std::string text;
        std::vector<std::size_t> pauses;
        for (std::size_t pause; (pause = rest.find("\\p")) != std::string_view::npos;) {
            text += Unescaped(rest.substr(0, pause));
            pauses.push_back(text.size());
            rest.remove_prefix(pause + 2);
        }
        text += Unescaped(rest);
        const auto end = NSuggest::FindEndOfMessage(text, pauses);
        const auto report =
            NSuggest::SuggestFor(NSuggest::MessagesIn(text, end), std::exchange(mNames, {}));
        return (end ? "end " + std::to_string(*end) + '\n' : "no end\n") + LinesOf(report);
    }

  private:
    std::vector<std::string> mNames;  // for the next messages
};

TEST(Suggest, SaysWhatIsRecorded)
{
    Speaker speaker;
    ExpectTranscript(WORD_SIFTER_SUGGESTIONS, [&](std::string_view word, const std::string& input) {
        return speaker.Say(word, input);
    });
}

}  // namespace
