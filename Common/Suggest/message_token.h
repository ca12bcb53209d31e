// Splits a message into tokens: what a person sees as numbers, words, separators and white space.

#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace NSuggest {

enum class TokenKind {
    kSpace,     // white space other than tabs
    kNumber,    // digits, with or without a sign and a point
    kExponent,  // a number with an exponent
    kDate,      // 2026-11-22, 22.11.2026, 22/11/26, 22.11.26
    kTime,      // 14:05, 14:05:09.5
    kDotted,    // digits with two points or more: 192.168.1.17
    kMixed,     // digits and letters that are all hexadecimal digits, a digit first: 4F
    kWord,      // a letter or _, then letters, digits and _
    kQuoted,    // what is between two double quotes
    kPrefix,    // 0x before a hexadecimal number
    kMark,      // a tab, or one other visible character
    kOther,     // one control character or byte above 127
};

struct MessageToken {
    TokenKind mKind;
    std::string_view mText;  // of the message; not empty
};

using MessageTokens = std::vector<MessageToken>;

enum class Grain {
    kCoarse,  // letters and digits stay together where they may be one word
    kFine,    // split wherever letters and digits meet
};

// The tokens refer to message and cover it without a gap.
MessageTokens Tokenize(std::string_view message, Grain grain = Grain::kCoarse);

// Returns true if text is one token of this kind.
bool IsToken(std::string_view text, TokenKind kind);

// Returns true for the kinds whose text differs from message to message even if it is the same in a
// few: dates and times.
bool IsClock(TokenKind kind);

// Return true for names such as Nov and Mon.
bool IsMonth(std::string_view word);
bool IsWeekday(std::string_view word);

// Return text without the white space at its start, at its end, and at both. The results refer to
// text.
std::string_view TrimmedLeft(std::string_view text);
std::string_view TrimmedRight(std::string_view text);
std::string_view Trimmed(std::string_view text);

}  // namespace NSuggest
