// Draws parsing strings and messages for them, and compares what the suggestions capture.
// WORD_SIFTER_DRAWS=1000 draws more of them, and prints those that are worst.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "Common/Explain/byte_text.h"
#include "Common/Pattern/pattern.h"
#include "Common/Suggest/suggester.h"

namespace {

using NPattern::Parameter;
using Values = std::vector<Parameter>;

class Draw {
  public:
    explicit Draw(unsigned seed) : mRandom(seed) { MakeParts(); }

    std::string Pattern() const
    {
        std::string pattern;
        for (const Part& part : mParts) pattern += part.mPiece + ' ';
        return pattern;
    }

    std::string Message()
    {
        std::string message;
        for (const Part& part : mParts) {
            message += part.mText;
            for (const char c : part.mShape) message += TextFor(c);
        }
        return message;
    }

  private:
    struct Part {
        std::string mPiece;
        std::string mText;   // fixed
        std::string mShape;  // of a value: a letter for each part of it
    };

    std::size_t Below(std::size_t end) { return mRandom() % end; }
    std::string Some(const std::string& from, std::size_t least, std::size_t most)
    {
        std::string some;
        for (std::size_t n = least + Below(most - least + 1); n != 0; --n) {
            some += from[Below(from.size())];
        }
        return some;
    }

    // Other characters stand for themselves.
    std::string TextFor(char shape)
    {
        switch (shape) {
            case 'n': return std::to_string(Below(1000));
            case '9': return Some("0123456789", 1, 1);
            case 's': return Some("-", 0, 1);
            case 'S': return Some("+-", 1, 1);
            case 'x': return Some("0123456789ABCDEF", 1, 1);
            case 'y': return Some("0123456789abcdef", 1, 1);
            case 'l': return Some("ABCDEFGHIJKLMNOPQRSTUVWXYZ", 1, 6);
            case 'c': return Some("NSEW", 1, 1);
            case 'i': return Some("ABCXYZ", 1, 2) + Some("-_", 0, 1) + Some("0123456789", 2, 2);
            case 't': return Some("abcdefghij", 2, 5) + Some(" ", 0, 1) + Some("klmno", 1, 4);
            case ' ': return Some(" ", 1, 3);
            case 'r': return Below(2) != 0 ? "door " : "pump: 3, ";
            case 'b': return std::string(1, static_cast<char>(1 + Below(255)));
            default: return std::string(1, shape);
        }
    }

    void AddText(const std::string& text)
    {
        mParts.push_back({NExplain::InQuotes(text), text, ""});
    }

    std::string NextName() const { return std::string("f") += std::to_string(mParts.size()); }

    // next: the character after the value; a blank or NUL: white space or the end.
    void AddField(char next)
    {
        static const std::vector<std::pair<std::string, std::string>> kForms = {
            {"integer=#", "n"},
            {"integer=#", "sn"},
            {"float=.#", "sn.99"},
            {"float=.#", "Sn.99"},
            {"integer=4#", "9999"},
            {"float=[-+.0-9E]", "s9.999E-09"},
            {"integer=4x", "xxxx"},
            {"integer=2x", "yy"},
            {"string=letters", "l"},
            {"float=.# 'V'", "n.99V"},
            {"string=letters", "c"},
            {"string=[0-9-]", "2026-99-99"},
            {"string=[0-9:]", "99:99:99"},
        };
        const std::string name = NextName() += ':';
        const std::size_t form = Below(kForms.size() + 3);
        if (next == '\0' && Below(6) == 0) {
            mParts.push_back({name + "string=[^\\r\\n]", "", "rrt"});
        } else if (Below(8) == 0) {
            mParts.push_back({"'\"' " + name + "string=[^\"] '\"'", "", "\"t\""});
        } else if (form < kForms.size()) {
            const bool isHex = kForms[form].second == "xxxx" && Below(2) != 0;
            if (isHex) AddText("0x");
            mParts.push_back({name + kForms[form].first, "", kForms[form].second});
        } else if (next == ' ' || next == '\0') {
            mParts.push_back({name + "string=chars", "", "i"});
        } else {
            mParts.push_back({name + "string=[^" + next + ']', "", form % 2 != 0 ? "i" : "t"});
        }
    }

    void AddBytes()
    {
        mParts.push_back({"{{AA}} {{55}}", "\xAA\x55", ""});
        for (std::size_t field = 1 + Below(4); field != 0; --field) {
            const bool isByte = Below(2) != 0;
            const std::string name = NextName();
            mParts.push_back(
                {name + (isByte ? ":integer=byte" : ":string=3 bytes"), "", isByte ? "b" : "bbb"});
            mParts.push_back({"{{03}}", "\x03", ""});
        }
    }

    void MakeParts()
    {
        const std::size_t style = Below(8);
        if (style == 7) return AddBytes();
        const char separator = ",;|/"[Below(4)];
        if (Below(3) == 0) AddText(style < 3 ? std::string("$GPXYZ") += separator : "STAT ");
        const std::size_t count = 1 + Below(6);
        for (std::size_t f = 0; f < count; ++f) {
            const bool isLast = f + 1 == count;
            std::string key(1 + f % 3, static_cast<char>('k' + f));
            const bool isSpaced = style == 3 || style == 5 || style == 6;
            if (style > 2 && style < 6) AddText(key += style == 5 ? ':' : '=');
            AddField(isLast ? '\0' : isSpaced ? ' ' : separator);
            if (isLast) break;
            if (isSpaced) {
                mParts.push_back({"", "", " "});
            } else {
                AddText({separator});
            }
        }
    }

    std::mt19937 mRandom;
    std::vector<Part> mParts;
};

bool Capture(NPattern::Pattern& pattern, const std::string& message, Values& outValues)
{
    const auto* const data = reinterpret_cast<const NPattern::Byte*>(message.data());
    if (pattern.Match(data, static_cast<std::uint32_t>(message.size())) == nullptr) return false;
    pattern.CollectParameters(outValues);
    return true;
}

std::string TextOf(const Parameter& value)
{
    if (value.mType == NPattern::kTypeString) return value.mStringValue;
    return std::to_string(value.mType == NPattern::kTypeFloat ? value.mFloatValue
                                                              : value.mIntValue);
}

// Returns how many of the wanted values are among the found ones, in their order.
std::size_t SameValues(const Values& wanted, const Values& found)
{
    std::size_t same = 0;
    auto from = found.begin();
    for (const Parameter& value : wanted) {
        const auto at = std::find_if(from, found.end(), [&](const Parameter& other) {
            return TextOf(other) == TextOf(value);
        });
        if (at == found.end()) continue;
        ++same;
        from = at + 1;
    }
    return same;
}

TEST(Suggest, MatchesFreshMessagesOfDrawnParsingStrings)
{
    const char* const wish = std::getenv("WORD_SIFTER_DRAWS");
    const unsigned draws = wish != nullptr ? static_cast<unsigned>(std::atoi(wish)) : 60;
    std::size_t messages = 0, matched = 0, fields = 0, same = 0, good = 0;
    for (unsigned seed = 1; seed <= draws; ++seed) {
        Draw draw(seed);
        std::vector<std::string> samples;
        for (int m = 0; m < 20; ++m) samples.push_back(draw.Message());
        const auto suggestions =
            NSuggest::SuggestFor({samples.begin(), samples.end()}, {}).mSuggestions;
        NPattern::Pattern written;
        written.SetPatternString(draw.Pattern());
        NPattern::Pattern suggested;
        suggested.SetPatternString(suggestions.empty() ? "" : suggestions[0].mPattern);
        std::size_t hits = 0, drawnFields = 0, drawnSame = 0;
        for (int m = 0; m < 200; ++m) {
            const std::string message = draw.Message();
            Values wanted, found;
            ASSERT_TRUE(Capture(written, message, wanted)) << draw.Pattern() << '\n' << message;
            drawnFields += wanted.size();
            if (!Capture(suggested, message, found)) continue;
            ++hits;
            drawnSame += SameValues(wanted, found);
        }
        const bool isGood = hits >= 190 && drawnSame * 10 >= drawnFields * 9;
        if (!isGood && wish != nullptr) {
            std::cout << draw.Pattern() << "\n  " << samples[0] << "\n  " << hits << " of 200, "
                      << drawnSame << " of " << drawnFields << ": "
                      << (suggestions.empty() ? "" : suggestions[0].mPattern) << '\n';
        }
        messages += 200, matched += hits, fields += drawnFields, same += drawnSame,
            good += isGood ? 1 : 0;
    }
    std::cout << draws << " draws: " << matched << " of " << messages << " fresh messages match, "
              << same << " of " << fields << " values are the same; both goals are reached by "
              << good << " draws\n";
    EXPECT_GE(matched * 100, messages * 95);
    EXPECT_GE(same * 100, fields * 90);
}

}  // namespace
