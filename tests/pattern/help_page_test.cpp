// Every example on the help page, run by the engine: what the page says is what happens.
//
// The class of a <code> says what it is: a "pattern", then its "error" or cases: a "message" or
// "bytes" (hexadecimal), its "result", and the "rest" that is left over, if anything is. In a
// pattern with an error, <mark> holds what the dialog marks, if that isn't ahead of the string.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <utility>

#include "engine_support.h"

namespace {

constexpr int kFewestExamples = 150;
constexpr int kShownDigits = 15;  // of a float: 34.2 and not 34.200000000000003

struct Code {
    std::string mClass;
    std::string mText;
};

std::string Replaced(std::string text, const std::string& old, const std::string& replacement)
{
    for (std::size_t at = 0; (at = text.find(old, at)) != text.npos; at += replacement.size()) {
        text.replace(at, old.size(), replacement);
    }
    return text;
}

// The marked texts of the page, with one more that is empty.
std::vector<Code> CodesOf(const std::string& page)
{
    constexpr std::string_view kStart = "<code class=\"";
    std::vector<Code> codes;
    for (std::size_t at = 0; (at = page.find(kStart, at)) != std::string::npos;) {
        at += kStart.size();
        const std::size_t content = page.find("\">", at) + 2;
        std::string text = page.substr(content, page.find("</code>", content) - content);
        for (const auto& [entity, meant] : {std::pair{"&lt;", "<"}, {"&gt;", ">"}, {"&amp;", "&"}})
            text = Replaced(text, entity, meant);
        codes.push_back({page.substr(at, content - 2 - at), text});
    }
    codes.emplace_back();
    return codes;
}

// The bytes meant by the page's notation for messages and results.
std::string BytesOf(const std::string& shown)
{
    const std::string text = Replaced(shown, "\u2423", " ");
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            bytes += text[i];
        } else if (text.at(++i) == 'x') {
            bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            bytes += std::string("\r\n\t\\").at(std::string("rnt\\").find(text[i]));
        }
    }
    return bytes;
}

// The message, and the pattern with its mark.
std::string ErrorOf(std::string pattern)
{
    try {
        NPattern::Pattern().SetPatternString(pattern);
    } catch (const NPattern::PatternSyntaxException& error) {
        if (error.mPosition >= 0) {
            const auto place = static_cast<std::size_t>(error.mPosition);
            pattern.insert(place + error.mOffendingText.size(), "</mark>").insert(place, "<mark>");
        }
        return error.mMessage + " in " + pattern;
    }
    return "no error";
}

TEST(HelpPage, EveryExampleDoesWhatThePageSays)
{
    std::ifstream file(WORD_SIFTER_HELP_PAGE, std::ios::binary);
    const std::vector<Code> codes =
        CodesOf({std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()});
    int examples = 0;
    std::string pattern, marked;
    for (auto code = codes.begin(); code + 1 < codes.end(); ++code) {
        if (code->mClass == "pattern") {
            marked = code->mText;
            pattern = Replaced(Replaced(marked, "<mark>", ""), "</mark>", "");
            EXPECT_NE(code[1].mClass, "pattern") << "an example of nothing";
            continue;
        }
        ++examples;
        SCOPED_TRACE(pattern + "   " + code->mText);
        if (code->mClass == "error") {
            EXPECT_EQ(BytesOf(code->mText) + " in " + marked, ErrorOf(pattern));
            continue;
        }
        const bool hex = code->mClass == "bytes";
        const std::string message =
            BytesOf(hex ? "\\x" + Replaced(code->mText, " ", "\\x") : code->mText);
        ASSERT_EQ((++code)->mClass, "result");
        std::string shown = BytesOf(code->mText);
        if (shown == "match") shown.clear();
        if (shown != "no match") shown += " | ";
        if (code[1].mClass == "rest") shown += BytesOf((++code)->mText);
        NPattern::Pattern compiled;
        ASSERT_NO_THROW(compiled.SetPatternString(pattern));
        EXPECT_EQ(shown, MatchResult(compiled, message, kShownDigits));
    }
    EXPECT_GE(examples, kFewestExamples);
}

}  // namespace
