#include "candidate.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include "Common/Explain/byte_text.h"
#include "Common/Explain/cautions.h"
#include "Common/Explain/trace.h"
#include "Common/Pattern/pattern_bytes.h"
#include "Common/Pattern/pattern_elements.h"
#include "message_token.h"

namespace NSuggest {

using NPattern::Byte;
using NPattern::Parameter;

namespace {

constexpr std::size_t kMostTexts = 5;         // texts that are kept for one output
constexpr std::size_t kLongestKeptText = 40;  // in bytes

const Byte* BytesOf(std::string_view message)
{
    return reinterpret_cast<const Byte*>(message.data());
}

// True if rest goes on with a number of which the last digit is before it: 5, .5, ,5, E-5. rest:
// not empty.
bool ContinuesNumber(std::string_view rest)
{
    const std::size_t mark = rest.find_first_not_of(".,Ee") == 1 ? 1 : 0;
    const bool isExponent = rest[0] == 'E' || rest[0] == 'e';
    rest.remove_prefix(mark);
    if (isExponent && (rest[0] == '+' || rest[0] == '-')) rest.remove_prefix(1);
    return rest.find_first_of("0123456789") == 0;
}

void Keep(const std::string& text, bool isFirst, OutputRange& ioRange)
{
    ioRange.mShortest = isFirst ? text.size() : std::min(ioRange.mShortest, text.size());
    ioRange.mLongest = std::max(ioRange.mLongest, text.size());
    auto& texts = ioRange.mTexts;
    const bool hasMany = !isFirst && texts.empty();
    if (hasMany || std::find(texts.begin(), texts.end(), text) != texts.end()) return;
    if (texts.size() == kMostTexts || text.size() > kLongestKeptText) {
        texts.clear();
    } else {
        texts.push_back(text);
    }
}

void Keep(double number, bool isFirst, OutputRange& ioRange)
{
    ioRange.mLeast = isFirst ? number : std::min(ioRange.mLeast, number);
    ioRange.mGreatest = isFirst ? number : std::max(ioRange.mGreatest, number);
}

}  // namespace

Candidate::Candidate(const std::string& pattern) : mPieces(NExplain::TakeApart(pattern))
{
    mSuggestion.mPattern = pattern;
    mPattern.SetPatternString(pattern);
    mEmpty.resize(mPieces.size());
    mRisks = NExplain::FindValueRisks(mPieces);
    std::vector<Parameter> captures;
    mPattern.CollectParameters(captures);
    for (const Parameter& capture : captures) {
        OutputRange& output = mSuggestion.mOutputs.emplace_back();
        output.mName = capture.mName;
        output.mType = capture.mType;
    }
}

bool Candidate::HasCautions() const
{
    return !NExplain::FindCautions(mPieces).empty();
}

bool Candidate::Matches(std::string_view message)
{
    const Byte* const end =
        mPattern.Match(BytesOf(message), static_cast<std::uint32_t>(message.size()));
    return end != nullptr;
}

bool Candidate::Count(std::string_view message)
{
    const auto length = static_cast<std::uint32_t>(message.size());
    const Byte* const end = mPattern.Match(BytesOf(message), length, mCaptured);
    if (end == nullptr) {
        CountEmptyField(message);
        return false;
    }
    const std::string_view rest = RestOf(message, end);
    if (IsCutBefore(message, rest) || IsClamped(message)) return false;
    if (!TrimmedRight(rest).empty()) ++mLonger;
    KeepValues();
    ++mSuggestion.mMatched;
    return true;
}

// end: of the match.
std::string_view Candidate::RestOf(std::string_view message, const Byte* end)
{
    return message.substr(static_cast<std::size_t>(end - BytesOf(message)));
}

// True if a match ends within a number of text. rest: the bytes of message after the match.
bool Candidate::IsCutBefore(std::string_view message, std::string_view rest) const
{
    const NExplain::Piece& last = mPieces.back();
    if (rest.empty() || last.mElement->IsBinary()) return false;
    const auto* const number = NExplain::ElementAs<NPattern::NumberElement>(last);
    if (number != nullptr && number->IsHex()) {
        return NPattern::IsHexDigit(static_cast<Byte>(rest[0]));
    }
    const auto before = static_cast<Byte>(message[message.size() - rest.size() - 1]);
    return NPattern::IsDigit(before) && ContinuesNumber(rest);
}

// True if the last match made an integer of a number that is too large for it.
bool Candidate::IsClamped(std::string_view message)
{
    using Limits = std::numeric_limits<std::int32_t>;
    const std::vector<Parameter>& values = mCaptured.Entries();
    const bool isAtLimit = std::any_of(values.begin(), values.end(), [](const Parameter& value) {
        return value.mIntValue == Limits::max() || value.mIntValue == Limits::min();
    });
    if (!isAtLimit) return false;
    const NExplain::Trace trace = NExplain::TraceMatch(mPieces, message);
    return !NExplain::FindValueCautions(mPieces, mRisks, message, trace).empty();
}

void Candidate::KeepValues()
{
    const bool isFirst = mSuggestion.mMatched == 0;
    const std::vector<Parameter>& values = mCaptured.Entries();
    for (std::size_t v = 0; v < values.size(); ++v) {
        const Parameter& value = values[v];
        OutputRange& range = mSuggestion.mOutputs[v];
        if (value.mType == NPattern::kTypeString) {
            Keep(value.mStringValue, isFirst, range);
        } else {
            const bool isFloat = value.mType == NPattern::kTypeFloat;
            Keep(isFloat ? value.mFloatValue : value.mIntValue, isFirst, range);
        }
    }
}

bool Candidate::IsTextNext(std::size_t piece, std::string_view rest)
{
    if (piece == mPieces.size()) return false;
    return NExplain::ElementAs<NPattern::StringElement>(mPieces[piece]) != nullptr &&
           mPieces[piece].mElement->Match(BytesOf(rest), static_cast<std::uint32_t>(rest.size())) !=
               nullptr;
}

// A field is empty if the text after it is where the field should be.
void Candidate::CountEmptyField(std::string_view message)
{
    if (mPieces.front().mElement->Match(BytesOf(message),
                                        static_cast<std::uint32_t>(message.size())) == nullptr) {
        return;
    }
    const NExplain::Trace trace = NExplain::TraceMatch(mPieces, message);
    const std::size_t piece = trace.mRefusedBy.value();
    if (mPieces[piece].mCaptures.empty()) return;
    const std::string_view rest = message.substr(trace.mStoppedAt);
    const bool isEmpty = rest.empty() || IsTextNext(piece + 1, rest);
    if (isEmpty) ++mEmpty[piece];
}

Suggestion Candidate::Result(std::size_t messages) const
{
    Suggestion result = mSuggestion;
    const auto isSame = [&](const OutputRange& output) {
        const bool isText = output.mType == NPattern::kTypeString;
        return result.mMatched == 1 ||
               (isText ? output.mTexts.size() == 1 : output.mLeast == output.mGreatest);
    };
    if (result.mOutputs.empty() && mLonger == 0) {
        result.mNotes.emplace_back("nothing varies in these messages, so there is no output");
    } else if (mHasOneSample && !result.mOutputs.empty() &&
               std::all_of(result.mOutputs.begin(), result.mOutputs.end(), isSame)) {
        result.mNotes.emplace_back(std::string(mSuggestion.mMatched == 1
                                                   ? "there is only one such message"
                                                   : "all such messages are the same") +
                                   ", so each number is taken to vary");
    }
    if (mLonger != 0) {
        result.mNotes.push_back(std::to_string(mLonger) + " of " +
                                NExplain::CountOf(messages, "message") +
                                (mLonger == 1 ? " has" : " have") + " more text after the match");
    }
    for (std::size_t p = 0; p < mPieces.size(); ++p) {
        if (mEmpty[p] == 0) continue;
        result.mNotes.push_back("field " + std::to_string(mPieces[p].mFirstCapture + 1) + " (" +
                                mPieces[p].mCaptures[0].mName +
                                ") is sometimes empty: " + std::to_string(mEmpty[p]) + " of " +
                                NExplain::CountOf(messages, "message") +
                                (mEmpty[p] == 1 ? " doesn't match" : " don't match"));
    }
    return result;
}

}  // namespace NSuggest
