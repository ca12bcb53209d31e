// The engine and the pattern matchers that it is compared with. Each is constructed from a pattern,
// parses messages, and holds the values of the last message that matched.

#pragma once

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>
#include <re2/re2.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <regex>
#include <string>
#include <tuple>
#include <vector>

#include "Common/Pattern/pattern.h"
#include "values.h"
#include "workloads.h"

namespace NBench {

// Ends the program, because its further measurements would be meaningless.
[[noreturn]] inline void Fail(const std::string& text)
{
    std::fprintf(stderr, "%s\n", text.c_str());
    std::exit(1);
}

template <typename Record>
class EnginePeer {
  public:
    explicit EnginePeer(const std::string& parsingString)
    {
        mPattern.SetPatternString(parsingString);
    }

    bool Parse(const Message& message)
    {
        const auto* const data = reinterpret_cast<const NPattern::Byte*>(message.mText);
        return mPattern.Match(data, message.mLength, mParameters) != nullptr;
    }

    Record Values() const
    {
        Record record;
        const NPattern::Parameter* next = mParameters.Entries().data();
        std::apply([&next](auto&... value) { (Take(next, value), ...); }, record);
        return record;
    }

  private:
    NPattern::Pattern mPattern;
    NPattern::CapturedParameters mParameters;
};

// PCRE2 with its just-in-time compiler.
template <typename Record>
class Pcre2Peer {
  public:
    explicit Pcre2Peer(const std::string& regex)
    {
        int error = 0;
        PCRE2_SIZE offset = 0;
        mCode.reset(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(regex.data()), regex.size(),
                                  PCRE2_ANCHORED, &error, &offset, nullptr));
        if (mCode == nullptr) Fail("pcre2_compile: " + regex);
        if (pcre2_jit_compile(mCode.get(), PCRE2_JIT_COMPLETE) != 0) Fail("pcre2_jit_compile");
        mMatch.reset(pcre2_match_data_create_from_pattern(mCode.get(), nullptr));
    }

    bool Parse(const Message& message)
    {
        const auto* const text = reinterpret_cast<PCRE2_SPTR>(message.mText);
        if (pcre2_jit_match(mCode.get(), text, message.mLength, 0, 0, mMatch.get(), nullptr) < 0) {
            return false;
        }
        const PCRE2_SIZE* const offsets = pcre2_get_ovector_pointer(mMatch.get());
        ReadCaptures(mRecord, [&](std::size_t i) {
            return std::string_view(message.mText + offsets[2 * i + 2],
                                    offsets[2 * i + 3] - offsets[2 * i + 2]);
        });
        return true;
    }

    const Record& Values() const { return mRecord; }

  private:
    struct Release {
        void operator()(pcre2_code* code) const { pcre2_code_free(code); }
        void operator()(pcre2_match_data* match) const { pcre2_match_data_free(match); }
    };
    std::unique_ptr<pcre2_code, Release> mCode;
    std::unique_ptr<pcre2_match_data, Release> mMatch;
    Record mRecord;
};

template <typename Record>
class Re2Peer {
  public:
    // With Latin-1, each byte is one character.
    explicit Re2Peer(const std::string& regex) : mRegex(regex, RE2::Latin1)
    {
        if (!mRegex.ok()) Fail("RE2: " + regex);
    }

    bool Parse(const Message& message)
    {
        const re2::StringPiece text(message.mText, message.mLength);
        if (!mRegex.Match(text, 0, text.size(), RE2::ANCHOR_START, mGroups.data(),
                          static_cast<int>(mGroups.size()))) {
            return false;
        }
        ReadCaptures(mRecord, [&](std::size_t i) {
            return std::string_view(mGroups[i + 1].data(), mGroups[i + 1].size());
        });
        return true;
    }

    const Record& Values() const { return mRecord; }

  private:
    RE2 mRegex;
    std::array<re2::StringPiece, std::tuple_size_v<Record> + 1> mGroups;
    Record mRecord;
};

template <typename Record>
class StdRegexPeer {
  public:
    explicit StdRegexPeer(const std::string& regex)
        : mRegex(regex, std::regex::ECMAScript | std::regex::optimize)
    {
    }

    bool Parse(const Message& message)
    {
        const char* const end = message.mText + message.mLength;
        if (!std::regex_search(message.mText, end, mMatch, mRegex,
                               std::regex_constants::match_continuous)) {
            return false;
        }
        ReadCaptures(mRecord, [&](std::size_t i) {
            const std::csub_match& group = mMatch[i + 1];
            return std::string_view(group.first, static_cast<std::size_t>(group.length()));
        });
        return true;
    }

    const Record& Values() const { return mRecord; }

  private:
    std::regex mRegex;
    std::cmatch mMatch;
    Record mRecord;
};

}  // namespace NBench
