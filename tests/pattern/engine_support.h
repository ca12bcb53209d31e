// What the tests of the engine share.

#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "Common/Pattern/pattern.h"
#include "Common/Pattern/pattern_element.h"

// A text that may hold NUL bytes.
using namespace std::string_literals;

// A message at the end of a heap block, so that a byte read too far is caught. An empty one is in a
// block of 1 byte, because a block of 0 bytes has a byte that may be read.
class HeapMessage {
  public:
    explicit HeapMessage(std::string_view text)
        : mBlock(new NPattern::Byte[std::max<std::size_t>(text.size(), 1)]),
          mLength(static_cast<std::uint32_t>(text.size()))
    {
        std::copy(text.begin(), text.end(), mBlock.get());
    }
    const NPattern::Byte* Data() const { return mBlock.get() + (mLength == 0 ? 1 : 0); }
    std::uint32_t Length() const { return mLength; }
    std::string From(const NPattern::Byte* start) const { return {start, Data() + mLength}; }

  private:
    std::unique_ptr<NPattern::Byte[]> mBlock;
    std::uint32_t mLength;
};

// "t=23.5 h=41" with strings in quotes: the captures in their order. digits: of a float.
inline std::string Show(const std::vector<NPattern::Parameter>& parameters, int digits = 17)
{
    std::ostringstream text;
    text.precision(digits);
    for (const NPattern::Parameter& parameter : parameters) {
        text << (text.tellp() > 0 ? " " : "") << parameter.mName << '=';
        switch (parameter.mType) {
            case NPattern::kTypeString: text << '"' << parameter.mStringValue << '"'; break;
            case NPattern::kTypeFloat: text << parameter.mFloatValue; break;
            default: text << parameter.mIntValue; break;
        }
    }
    return text.str();
}

// The captures and, after " | ", the bytes left; "no match" without a match.
inline std::string MatchResult(NPattern::Pattern& pattern, std::string_view text, int digits = 17)
{
    const HeapMessage message(text);
    const NPattern::Byte* const rest = pattern.Match(message.Data(), message.Length());
    if (rest == nullptr) return "no match";
    std::vector<NPattern::Parameter> parameters;
    pattern.CollectParameters(parameters);
    return Show(parameters, digits) + " | " + message.From(rest);
}

// The obvious way to match, against which the program of a pattern is held: the elements one by
// one, each from where the last one stopped. outCaptures: only after a match.
inline const NPattern::Byte* MatchByElements(const NPattern::ElementList& elements,
                                             const HeapMessage& message,
                                             std::vector<NPattern::Parameter>& outCaptures)
{
    const NPattern::Byte* current = message.Data();
    const NPattern::Byte* const end = current + message.Length();
    for (const auto& element : elements) {
        current = element->Match(current, static_cast<std::uint32_t>(end - current));
        if (current == nullptr) return nullptr;
    }
    outCaptures.clear();
    for (const auto& element : elements) element->CollectParameters(outCaptures);
    return elements.empty() ? nullptr : current;
}

// As MatchResult, of the elements one by one.
inline std::string ElementsResult(const std::string& parseString, std::string_view text)
{
    const HeapMessage message(text);
    std::vector<NPattern::Parameter> parameters;
    const NPattern::Byte* const rest =
        MatchByElements(NPattern::CompileElements(parseString), message, parameters);
    return rest != nullptr ? Show(parameters) + " | " + message.From(rest) : "no match";
}

// Bit by bit, so that a negative zero is not a zero.
inline bool SameParameter(const NPattern::Parameter& a, const NPattern::Parameter& b)
{
    return a.mName == b.mName && a.mType == b.mType && a.mIntValue == b.mIntValue &&
           a.mStringValue == b.mStringValue &&
           std::bit_cast<std::uint64_t>(a.mFloatValue) ==
               std::bit_cast<std::uint64_t>(b.mFloatValue);
}

// What the elements dump, with the 16 rows of a set of bytes put as ranges: "{41-5A 61}".
inline std::string DumpOf(const std::string& parseString)
{
    std::FILE* const file = std::tmpfile();
    for (const auto& element : NPattern::CompileElements(parseString)) element->Dump(file);
    std::rewind(file);
    std::string dump;
    std::vector<bool> members;
    for (char line[256]; std::fgets(line, sizeof line, file) != nullptr;) {
        if (std::string_view(line).substr(0, 13) != "           { ") {
            dump += line;
            continue;
        }
        for (int cell = 0; cell < 16; ++cell) members.push_back(line[13 + cell * 3] != '-');
        if (members.size() < 256) continue;
        dump.back() = '{';
        for (int b = 0; b < 256; ++b) {
            if (!members[static_cast<std::size_t>(b)]) continue;
            int last = b;
            while (last < 255 && members[static_cast<std::size_t>(last + 1)]) ++last;
            char range[16];
            std::snprintf(range, sizeof range, last > b ? " %02X-%02X" : " %02X", b, last);
            dump += range;
            b = last;
        }
        dump += " }\n";
        members.clear();
    }
    std::fclose(file);
    return dump;
}
