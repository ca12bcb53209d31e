// Every example on the help page, run by the engine: what the page says is what happens.
//
// The page marks an example by the class of each <code>: a "pattern", then either its "error" or
// cases: a "message" (text) or "bytes" (pairs of hexadecimal digits), its "result", and the "rest"
// that is left over, if anything is. In a pattern with an error, <mark> holds what the dialog
// marks; without one the place lies before the first character.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>

#include "engine_support.h"

using namespace NPattern;

namespace {

constexpr int kFewestExamples = 150;
constexpr int kShownDigits = 15;  // of a float: 34.2 and not 34.200000000000003

struct Code {
    std::string mClass;
    std::string mHtml;
};

std::vector<Code> CodesOf(const std::string& page)
{
    constexpr std::string_view kStart = "<code class=\"";
    std::vector<Code> codes;
    for (std::size_t at = 0; (at = page.find(kStart, at)) != std::string::npos;) {
        at += kStart.size();
        const std::size_t content = page.find("\">", at);
        const std::size_t end = page.find("</code>", content);
        codes.push_back(
            {page.substr(at, content - at), page.substr(content + 2, end - content - 2)});
    }
    codes.emplace_back();  // there is always a next one to look at
    return codes;
}

// The text that a browser shows.
std::string TextOf(std::string html)
{
    constexpr const char* kReplacements[][2] = {
        {"<[^>]*>", ""}, {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}};
    for (const auto& [from, to] : kReplacements) {
        html = std::regex_replace(html, std::regex(from), to);
    }
    return html;
}

// The bytes meant by the page's notation for messages and results.
std::string BytesOf(const std::string& text)
{
    static const std::regex kNotation(R"(\\x([0-9A-F]{2})|\\([rnt\\])|\xE2\x90\xA3)");
    std::string bytes;
    auto rest = text.begin();
    for (std::sregex_iterator it(text.begin(), text.end(), kNotation), end; it != end; ++it) {
        const std::smatch& match = *it;
        bytes.append(rest, match[0].first);
        rest = match[0].second;
        if (match[1].matched) {
            bytes += static_cast<char>(std::stoi(match[1], nullptr, 16));
        } else {
            bytes += match[2].matched ? "\r\n\t\\"[std::string("rnt\\").find(match[2])] : ' ';
        }
    }
    return bytes.append(rest, text.end());
}

// "message @place [what is marked]", as the engine has it and as the page shows it.
std::string ErrorOf(const std::string& pattern)
{
    try {
        Pattern().SetPatternString(pattern);
    } catch (const PatternSyntaxException& error) {
        const int place = error.mPosition;
        const std::string marked = place < 0 ? ""
                                             : pattern.substr(static_cast<std::size_t>(place),
                                                              error.mOffendingText.size());
        return error.mMessage + " @" + std::to_string(place) + " [" + marked + "]";
    }
    return "no error";
}
std::string ShownError(const std::string& patternHtml, const std::string& error)
{
    const std::size_t start = patternHtml.find("<mark>");
    if (start == std::string::npos) return error + " @-1 []";
    const std::string marked = patternHtml.substr(start, patternHtml.find("</mark>") - start);
    const std::size_t place = TextOf(patternHtml.substr(0, start)).size();
    return error + " @" + std::to_string(place) + " [" + TextOf(marked) + "]";
}

TEST(HelpPage, EveryExampleDoesWhatThePageSays)
{
    std::ifstream file(WORD_SIFTER_HELP_PAGE, std::ios::binary);
    const std::vector<Code> codes =
        CodesOf({std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()});
    int examples = 0;
    std::string patternHtml;
    for (auto code = codes.begin(); code + 1 < codes.end(); ++code) {
        if (code->mClass == "pattern") {
            patternHtml = code->mHtml;
            EXPECT_NE(code[1].mClass, "pattern") << "an example of nothing: " << patternHtml;
            continue;
        }
        const std::string pattern = TextOf(patternHtml);
        SCOPED_TRACE(pattern + "   " + TextOf(code->mHtml));
        ++examples;
        if (code->mClass == "error") {
            EXPECT_EQ(ShownError(patternHtml, BytesOf(TextOf(code->mHtml))), ErrorOf(pattern));
            continue;
        }
        const bool hex = code->mClass == "bytes";
        ASSERT_TRUE(hex || code->mClass == "message") << code->mClass;
        static const std::regex kPair(" *([0-9A-F]{2})");
        const std::string text = TextOf(code->mHtml);
        const std::string message = BytesOf(hex ? std::regex_replace(text, kPair, "\\x$1") : text);
        ASSERT_EQ((++code)->mClass, "result");
        std::string shown = BytesOf(TextOf(code->mHtml));
        if (shown != "no match") {
            if (shown == "match") shown.clear();
            shown += " | ";
            if (code[1].mClass == "rest") shown += BytesOf(TextOf((++code)->mHtml));
        }
        Pattern compiled;
        ASSERT_NO_THROW(compiled.SetPatternString(pattern));
        EXPECT_EQ(shown, MatchResult(compiled, message, kShownDigits));
    }
    EXPECT_GE(examples, kFewestExamples);
}

}  // namespace
