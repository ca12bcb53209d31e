#include "comparison.h"

#include <algorithm>
#include <bit>

#include "Common/Pattern/pattern_ltoken.h"
#include "engine_input.h"

using NPattern::Byte;
using NPattern::LToken;
using NPattern::Parameter;
using NPattern::PatternSyntaxException;
using NReference::Token;
using NReference::Value;

namespace {

// The types of tokens and of values have the same numbers on both sides.
bool SameToken(const LToken& a, const Token& b)
{
    return static_cast<int>(a.mType) == static_cast<int>(b.mType) && a.mText == b.mText &&
           a.mChar == b.mChar && a.mValue == b.mValue && a.mEscaped == b.mEscaped &&
           (a.mPosition == b.mPosition || b.mType == NReference::kEnd);
}

bool SameOutput(const Parameter& a, const Value& b)
{
    return a.mName == b.mName && static_cast<int>(a.mType) == static_cast<int>(b.mType);
}

// Bit by bit, so that a negative zero is not a zero.
bool SameValue(const Parameter& a, const Value& b)
{
    return SameOutput(a, b) && a.mIntValue == b.mInteger && a.mStringValue == b.mString &&
           std::bit_cast<std::uint64_t>(a.mFloatValue) == std::bit_cast<std::uint64_t>(b.mFloat);
}

template <typename A, typename B, typename Same>
bool AllSame(const std::vector<A>& a, const std::vector<B>& b, Same same)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
}

}  // namespace

Comparison::Comparison(const std::string& parseString)
{
    try {
        mPattern.SetPatternString(parseString);
        mElements = NPattern::CompileElements(parseString);
    } catch (const PatternSyntaxException& error) {
        mDifference = CompareErrors(parseString, error);
        return;
    }
    mDifference = CompareCompiled(parseString);
    mCompiles = mDifference == nullptr;
}

const char* Comparison::CompareErrors(const std::string& parseString,
                                      const PatternSyntaxException& error)
{
    try {
        NReference::Compile(parseString);
    } catch (const NReference::Error& wanted) {
        if (error.mMessage != wanted.mMessage) return "the message of the error";
        if (error.mPosition != wanted.mPosition) return "the position of the error";
        if (error.mOffendingText != wanted.mOffendingText) return "the offending text of the error";
        if (error.Message() != wanted.FullMessage()) return "the full message of the error";
        return nullptr;
    }
    return "that there is an error";
}

const char* Comparison::CompareCompiled(const std::string& parseString)
{
    std::vector<LToken> tokens;
    NPattern::Tokenize(tokens, parseString);
    try {
        mReference = NReference::Compile(parseString);
    } catch (const NReference::Error&) {
        return "that there is no error";
    }
    if (!AllSame(tokens, NReference::Tokenize(parseString), SameToken)) return "the tokens";
    if (WholeDump(mElements) != NReference::Dump(mReference)) return "the dump of the elements";
    mPattern.Match(nullptr, 0, mCaptured);
    if (!AllSame(mCaptured.Entries(), NReference::Captures(mReference), SameOutput)) {
        return "the names and types of the captures";
    }
    return nullptr;
}

const char* Comparison::MatchDifference(const HeapMessage& message)
{
    const Byte* const data = message.Data();
    const std::string_view bytes(reinterpret_cast<const char*>(data), message.Length());
    const std::optional<std::size_t> taken = NReference::Match(mReference, bytes);
    const Byte* const wanted = taken.has_value() ? data + *taken : nullptr;

    if (mPattern.Match(data, message.Length(), mCaptured) != wanted) {
        return "what the program takes of the message";
    }
    std::vector<Parameter> byElements;
    if (MatchByElements(mElements, message, byElements) != wanted) {
        return "what the elements take of the message";
    }
    if (wanted == nullptr) return nullptr;
    ++mMatchCount;
    const std::vector<Value> captures = NReference::Captures(mReference);
    if (!AllSame(mCaptured.Entries(), captures, SameValue)) return "what the program captures";
    if (!AllSame(byElements, captures, SameValue)) return "what the elements capture";
    return nullptr;
}
