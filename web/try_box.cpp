#include "try_box.h"

#include <cmath>
#include <string>
#include <string_view>

#include "Common/Explain/cautions.h"
#include "Common/Explain/fault.h"
#include "Common/Explain/meaning.h"
#include "Common/Explain/miss.h"
#include "Common/Explain/value_cautions.h"
#include "Common/Pattern/pattern.h"
#include "web/deliveries.h"
#include "web/kept_text.h"

namespace {

using NExplain::Pieces;
using NPattern::Parameter;
using NWeb::Json;
using NWeb::Message;
using NWeb::TextJson;

// Which messages are reported in detail.
struct Window {
    std::size_t mFirst;
    std::size_t mMost;
    bool mOnlyMisses;
};

const char* TypeName(NPattern::ParameterType type)
{
    switch (type) {
        case NPattern::kTypeString: return "string";
        case NPattern::kTypeFloat: return "float";
        case NPattern::kTypeLInteger:
        case NPattern::kTypeBInteger: return "integer";
        case NPattern::kTypeNone: break;
    }
    return "";
}

// The value of an output. The host's strings end at a NUL, and JSON has no infinite number.
Json ValueJson(const Parameter& value)
{
    if (value.IsInteger()) return value.mIntValue;
    if (value.mType == NPattern::kTypeString) {
        return TextJson(
            std::string_view(value.mStringValue).substr(0, value.mStringValue.find('\0')));
    }
    if (std::isfinite(value.mFloatValue)) return value.mFloatValue;
    return value.mFloatValue < 0 ? "-inf" : "inf";
}

Json PieceJson(const NExplain::Piece& piece)
{
    const NExplain::Meaning meaning = NExplain::MeaningOf(piece);
    Json captures = Json::array();
    for (const NExplain::CaptureMeaning& capture : meaning.mCaptures) {
        captures.push_back({{"name", capture.mName}, {"value", capture.mValue}});
    }
    return {{"start", piece.mStart},
            {"length", piece.mSource.size()},
            {"takes", TextJson(meaning.mTakes)},
            {"skips_space", piece.mSkipsSpace},
            {"first_output", piece.mFirstCapture},
            {"captures", captures}};
}

Json CautionsJson(const std::vector<NExplain::Caution>& cautions)
{
    Json list = Json::array();
    for (const NExplain::Caution& caution : cautions) list.push_back(NSift::CautionJson(caution));
    return list;
}

// Matches one message after the other, and reports those in a window.
class Run {
  public:
    // Throws NPattern::PatternSyntaxException if the string doesn't compile.
    Run(const std::string& parseString, const Window& window)
        : mPieces(NExplain::TakeApart(parseString)),
          mRisks(NExplain::FindValueRisks(mPieces)),
          mWindow(window)
    {
        mPattern.SetPatternString(parseString);
    }

    void Take(const Message& message)
    {
        ++mMessages;
        const auto* const data = reinterpret_cast<const NPattern::Byte*>(message.mText.data());
        const auto size = static_cast<std::uint32_t>(message.mText.size());
        const bool matched = !message.mIsLost && mPattern.Match(data, size, mCaptured) != nullptr;
        if (matched) ++mMatched;
        if (!IsInWindow(matched)) return;
        mRows.push_back(matched ? MatchJson(message) : MissJson(message));
    }

    Json Result() &&
    {
        Json pieces = Json::array();
        for (const NExplain::Piece& piece : mPieces) pieces.push_back(PieceJson(piece));
        return {{"pieces", std::move(pieces)},
                {"outputs", OutputsJson()},
                {"cautions", CautionsJson(NExplain::FindCautions(mPieces))},
                {"messages", mMessages},
                {"matched", mMatched},
                {"rows", std::move(mRows)}};
    }

  private:
    bool IsInWindow(bool matched) const
    {
        if (mWindow.mOnlyMisses && matched) return false;
        const std::size_t index = (mWindow.mOnlyMisses ? mMessages - mMatched : mMessages) - 1;
        return index >= mWindow.mFirst && index - mWindow.mFirst < mWindow.mMost;
    }

    Json OutputsJson() const
    {
        Json outputs = Json::array();
        for (const NExplain::Piece& piece : mPieces) {
            for (const Parameter& capture : piece.mCaptures) {
                outputs.push_back({{"name", capture.mName}, {"value", TypeName(capture.mType)}});
            }
        }
        return outputs;
    }

    Json MatchJson(const Message& message) const
    {
        Json values = Json::array();
        for (const Parameter& value : mCaptured.Entries()) values.push_back(ValueJson(value));
        const NExplain::Trace trace = NExplain::TraceMatch(mPieces, message.mText);
        Json row = {{"type", "match"},
                    {"message", mMessages},
                    {"values", std::move(values)},
                    {"text", TextJson(message.mText)},
                    {"steps", NSift::StepsJson(trace)}};
        const auto cautions = NExplain::FindValueCautions(mPieces, mRisks, message.mText, trace);
        if (!cautions.empty()) row["cautions"] = CautionsJson(cautions);
        return row;
    }

    Json MissJson(const Message& message) const
    {
        Json row = {{"type", "miss"}, {"message", mMessages}, {"text", TextJson(message.mText)}};
        if (message.mIsLost) row["verdict"] = NExplain::kLostVerdict;
        if (message.mIsLost || mPieces.empty()) return row;
        const NExplain::Trace trace = NExplain::TraceMatch(mPieces, message.mText);
        const NExplain::Miss miss =
            NExplain::ExplainMiss(mPieces, message.mText, trace, message.mIsCut);
        row.update(NSift::MissJson(mPieces, trace, miss));
        return row;
    }

    const Pieces mPieces;
    const std::vector<NExplain::ValueRisk> mRisks;
    const Window mWindow;
    NPattern::Pattern mPattern;
    NPattern::CapturedParameters mCaptured;
    std::size_t mMessages = 0;
    std::size_t mMatched = 0;
    Json mRows = Json::array();
};

Json TryJson(const std::string& parseString, std::string_view deliveries, char eomChar,
             const Window& window)
{
    try {
        Run run(parseString, window);
        NWeb::ForEachMessage(deliveries, eomChar,
                             [&run](const Message& message) { run.Take(message); });
        return std::move(run).Result();
    } catch (const NPattern::PatternSyntaxException&) {
        return {{"fault", NSift::FaultJson(NExplain::FindFault(parseString).value())}};
    }
}

}  // namespace

const char* WordSifterTry(const char* pattern, std::size_t patternSize, const char* deliveries,
                          std::size_t deliveriesSize, std::uint32_t eomChar, std::size_t firstRow,
                          std::size_t mostRows, std::uint32_t onlyMisses)
{
    return NWeb::KeepText([&] {
        return TryJson({pattern, patternSize}, {deliveries, deliveriesSize},
                       static_cast<char>(eomChar), {firstRow, mostRows, onlyMisses != 0});
    });
}
