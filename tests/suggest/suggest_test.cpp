// Tests what is suggested for samples of messages.

#include <gtest/gtest.h>

#include <charconv>
#include <cstdint>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "Common/Suggest/end_of_message.h"
#include "Common/Suggest/sample_store.h"
#include "Common/Suggest/suggester.h"

namespace {

std::string Repeated(std::string_view text, int count)
{
    std::string repeated;
    for (; count != 0; --count) repeated += text;
    return repeated;
}

// Texts of which each has a shape of its own.
std::string ShapeWith(std::size_t number)
{
    std::string shape;
    for (std::size_t bit = 1; bit <= 1U << 13U; bit *= 2) shape += (number & bit) != 0 ? '-' : '+';
    return shape;
}

TEST(SampleStore, KeepsFewOfEachShape)
{
    const std::string dashes(66, '-');
    // Pairs, separated by '/': those of the same shape have '~' between them, the others '|'.
    std::istringstream cases(
        "a=1~bcd=23456/a=1|a:1/a=1|1=a/a  b~a b/--|-/a1|1a/aaa~bb/aa--~a--/"
        "a=1~a=123456789/a=1|a=1234567890/1234567890~12345678901/1~11/"
        "abcdefghij~a/__________|_/a=-1|a=-/a1a|a/1234567890|a/|0/- -|-- /"
        "\x01-|-\x01/=" +
        dashes + "|:" + dashes);
    for (std::string text; std::getline(cases, text, '/');) {
        const std::size_t sign = text.find_first_of("~|");
        NSuggest::SampleStore store;
        for (int m = 0; m < 16; ++m) EXPECT_TRUE(store.AddUnlike(text.substr(0, sign)));
        EXPECT_EQ(store.AddUnlike(text.substr(sign + 1)), text[sign] == '|') << text;
    }
}

TEST(SampleStore, IsBounded)
{
    NSuggest::SampleStore store;
    const auto sizeAfter = [&store](std::size_t messages, std::size_t shapes) {
        for (std::size_t m = 0; m < messages; ++m) store.Add(ShapeWith(m % shapes));
        return store.Messages().size();
    };
    EXPECT_EQ(sizeAfter(2010, 1), 2000U);
    EXPECT_EQ(sizeAfter(200, 3), 2032U);
    EXPECT_EQ(sizeAfter(3000, 3000), 4000U);
    for (std::size_t m = 0; m < 990; ++m) EXPECT_TRUE(store.AddUnlike(ShapeWith(m)));
    for (std::size_t m = 0; m < 20; ++m) EXPECT_EQ(store.AddUnlike("x"), m < 10);
    EXPECT_EQ(store.Messages().size(), 5000U);

    NSuggest::SampleStore shapes;
    for (std::size_t m = 0; m < 4097; ++m) EXPECT_EQ(shapes.AddUnlike(ShapeWith(m)), m < 4096);
    for (const std::size_t first : {2047U, 2048U}) {
        NSuggest::SampleStore bytes;
        bytes.Add(std::string(first, '-'));
        for (std::size_t m = 0; m < 600; ++m) bytes.Add(std::string(2048, '-'));
        EXPECT_EQ(bytes.Messages().size(), first == 2048 ? 512U : 513U);
    }
}

// The first 64 KiB decide: they are lines, but for a part at their start.
TEST(Suggest, CutsTextAtItsLimits)
{
    const std::string text =
        Repeated("5;", 1 << 14) + Repeated("T=1\n", 1 << 13) + Repeated("\x01\x02;", 1 << 16);
    EXPECT_EQ(NSuggest::FindEndOfMessage(text, {70000}), '\n');
    EXPECT_EQ(NSuggest::FindEndOfMessage(text.substr(0, 1 << 15)), ';');
    EXPECT_EQ(NSuggest::MessagesIn(text, '~').front().size(), 2048U);
    const auto report = NSuggest::SuggestFor({std::string(3000, 'a'), std::string(3000, 'b')}, {});
    EXPECT_EQ(report.mSuggestions.at(0).mOutputs.at(0).mLongest, 2048U);
}

// Values beyond those that are learned from: longer, and too large for an integer.
TEST(Suggest, CountsNoCutValues)
{
    const struct {
        const char* mBefore;
        std::uint64_t mFirst;
        std::uint64_t mLater;
        int mBase;
        const char* mPattern;
        double mGreatest;
    } kCases[] = {
        {"", 10, 100, 10, "value:integer=#", 149},
        {"n=", 1234567890, 4294967296, 10, "'n=' n:float=.#", 4294967345.0},
        {"h=0x", 0xF0000, 0xF0000000, 16, "'h=0x' h:string=x", 0},
    };
    for (const auto& row : kCases) {
        NSuggest::Suggester suggester({});
        const auto add = [&](std::uint64_t number) {
            char digits[32];
            const auto end = std::to_chars(digits, digits + sizeof digits, number, row.mBase).ptr;
            suggester.Add(row.mBefore + std::string(digits, end));
        };
        do {
            for (std::uint64_t m = 0; m < 5000; ++m) add(row.mFirst + m % 90);
            for (std::uint64_t m = 0; m < 50; ++m) add(row.mLater + m);
        } while (suggester.NextPass());
        const NSuggest::Suggestion& first = suggester.Result().mSuggestions.at(0);
        EXPECT_EQ(first.mPattern, row.mPattern);
        EXPECT_EQ(first.mMatched, 5050U) << row.mPattern;
        EXPECT_EQ(first.mOutputs[0].mGreatest, row.mGreatest);
    }
}

TEST(Suggest, ReportsWhatDoesNotFit)
{
    NSuggest::Suggester suggester({});
    std::mt19937 random(1);
    do {
        random.seed(1);
        for (int m = 0; m < 100000; ++m) {  // the odd ones come after those that are learned from
            std::string message = "v=";
            if (m != 60000) message += std::to_string(random() % 1000);
            suggester.Add(message.append(m == 70000 ? ",b" : ",a"));
        }
        suggester.Add("");
    } while (suggester.NextPass());
    const NSuggest::Report& report = suggester.Result();
    ASSERT_FALSE(report.mSuggestions.empty());
    const NSuggest::Suggestion& first = report.mSuggestions[0];
    EXPECT_EQ(first.mPattern, "'v=' v:integer=# ',' text:string=letters");
    EXPECT_EQ(first.mMatched, 99999U);
    EXPECT_EQ(first.mOutputs[0].mGreatest, 999);
    EXPECT_EQ(first.mOutputs[1].mTexts, (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(first.mNotes,
              (std::vector<std::string>{
                  "field 1 (v) is sometimes empty: 1 of 100000 messages doesn't match"}));
    EXPECT_EQ(report.mMessages, 100000U);
    EXPECT_EQ(report.mEmpty, 1U);
}

}  // namespace
