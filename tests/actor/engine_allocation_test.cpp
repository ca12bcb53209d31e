// The engine without a host: after memory has run out, at any allocation, everything is usable.

#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "Common/Pattern/pattern.h"
#include "allocations.h"

using namespace NAllocations;
using NPattern::CapturedParameters;
using NPattern::Pattern;

namespace {

const std::string kString = "f:f=.# name_beyond_any_small_buffer:s=[a-z] 'x' (a=4-7) {20-7F} eol";
constexpr char kShortText[] = "1 ab x00\n";
constexpr char kLongText[] = "2.5 abcdefghijklmnopqrstuvwxyz x00\n";

const NPattern::Byte* Match(Pattern& pattern, const char* text, CapturedParameters& outCaptured)
{
    const auto* const data = reinterpret_cast<const NPattern::Byte*>(text);
    return pattern.Match(data, static_cast<std::uint32_t>(std::strlen(text)), outCaptured);
}

// Captures of another pattern, or of a former match.
struct Engine {
    Pattern mPattern;
    CapturedParameters mCaptured;
    std::vector<NPattern::Parameter> mCollected;
};

struct Work {
    const char* mName;
    bool mHasMatched;  // the pattern; otherwise the captures are those of another one
    int mAllocations;  // the fewest places at which memory can run out
    void (*mDo)(Engine& engine);
};

const Work kWork[] = {
    {"compile", true, 20, [](Engine& e) { e.mPattern.SetPatternString(kString); }},
    {"first match", false, 3, [](Engine& e) { Match(e.mPattern, kLongText, e.mCaptured); }},
    {"longer match", true, 1, [](Engine& e) { Match(e.mPattern, kLongText, e.mCaptured); }},
    {"collect", true, 2, [](Engine& e) { e.mPattern.CollectParameters(e.mCollected); }},
};

// Returns true if the work threw what the engine may throw.
bool ThrowsWithFault(const Work& work, Engine& engine, int n)
{
    sAllocations = 0;
    sFailing = n;
    sCountsWithoutHost = true;
    bool threw = true;
    try {
        work.mDo(engine);
        threw = false;
    } catch (const std::bad_alloc&) {
    } catch (const NPattern::PatternSyntaxException&) {  // no form had memory for an element
    }
    sCountsWithoutHost = false;
    sFailing = 0;
    return threw;
}

// The captures are those of one pattern, and each value is that of one message.
void ExpectWholeCaptures(const std::vector<NPattern::Parameter>& entries, bool hasMatched)
{
    if (entries.size() == 1) {
        EXPECT_EQ(entries[0].mName + entries[0].mStringValue, "kx");
        return;
    }
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[1].mName, "name_beyond_any_small_buffer");
    const std::string& text = entries[1].mStringValue;
    EXPECT_TRUE(text == (hasMatched ? "ab" : "") || text.size() == 26) << text;
}

TEST(Faults, OfMemoryInTheEngineAlone)
{
    Pattern other;
    other.SetPatternString("k:s=[a-z]");
    for (const Work& work : kWork) {
        int n = 0;
        for (bool threw = true; threw;) {
            SCOPED_TRACE(work.mName + std::to_string(++n));
            Engine engine;
            engine.mPattern.SetPatternString(kString);
            Match(other, "x", engine.mCaptured);
            if (work.mHasMatched) Match(engine.mPattern, kShortText, engine.mCaptured);

            threw = ThrowsWithFault(work, engine, n);
            ExpectWholeCaptures(engine.mCaptured.Entries(), work.mHasMatched);
            if (threw && &work == &kWork[0]) {
                EXPECT_EQ(Match(engine.mPattern, kShortText, engine.mCaptured), nullptr);
                EXPECT_TRUE(engine.mCaptured.Entries().empty());
                engine.mPattern.SetPatternString(kString);
            }
            EXPECT_NE(Match(engine.mPattern, kLongText, engine.mCaptured), nullptr);
            const auto& entries = engine.mCaptured.Entries();
            ASSERT_EQ(entries.size(), 3U);
            EXPECT_EQ(entries[0].mFloatValue, 2.5);
            EXPECT_EQ(entries[1].mStringValue.size(), 26U);
            EXPECT_EQ(entries[2].mIntValue, 3);
        }
        EXPECT_GT(n, work.mAllocations);
    }
}

}  // namespace
