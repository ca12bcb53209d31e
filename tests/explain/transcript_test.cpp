// Everything that is said about many parsing strings, messages and streams of bytes.

#include "transcript.h"

#include "Common/Explain/byte_survey.h"
#include "Common/Explain/byte_text.h"
#include "Common/Explain/cautions.h"
#include "Common/Explain/fault.h"
#include "Common/Explain/meaning.h"
#include "Common/Explain/miss.h"
#include "Common/Explain/value_cautions.h"

using namespace NExplain;

namespace {

std::string Lines(const std::string& title, const std::vector<std::string>& texts)
{
    std::string lines;
    for (const std::string& text : texts) lines += title + ": " + text + '\n';
    return lines;
}

std::string CautionLines(const std::vector<Caution>& cautions)
{
    std::string lines;
    for (const Caution& caution : cautions) {
        const char* const effect = PreventsMatch(caution.mKind)      ? ", no match"
                                   : MakesValuesWrong(caution.mKind) ? ", wrong values"
                                                                     : "";
        lines += "caution " + std::to_string(caution.mKind) + " about piece " +
                 std::to_string(caution.mPiece + 1) + effect + ": " + caution.mText + '\n';
    }
    return lines;
}

class Speaker {
  public:
    std::string Say(std::string_view word, const std::string& input)
    {
        if (word == "pattern") return OfPattern(input);
        if (word == "escaped pattern") return OfPattern(Unescaped(input));
        if (word == "needed in") return Lines("needs", FindFault(input).value().mNeeds);
        if (word == "message") return OfMessage(Unescaped(input), false);
        if (word == "cut message") return OfMessage(Unescaped(input), true);
        if (word == "lost message") return kLostVerdict + std::string("\n");
        if (word == "bytes") return OfBytes(input);
        throw std::invalid_argument(input);
    }

  private:
    std::string OfPattern(const std::string& pattern)
    {
        mPieces.clear();
        if (const auto fault = FindFault(pattern)) {
            return "error " + std::to_string(fault->mCode) + " at " +
                   std::to_string(fault->mStart) + '+' + std::to_string(fault->mLength) + ": " +
                   Escaped(fault->mMessage) + '\n' + Lines("hint", fault->mHints);
        }
        mPieces = TakeApart(pattern);
        std::string lines;
        for (const Piece& piece : mPieces) {
            const Meaning meaning = MeaningOf(piece);
            lines += Quoted(piece.mSource) + (piece.mSkipsSpace ? " skips space, and" : "") +
                     " takes " + meaning.mTakes + '\n';
            for (const CaptureMeaning& capture : meaning.mCaptures) {
                lines += "  " + capture.mName + ": " + capture.mValue + '\n';
            }
        }
        return lines + CautionLines(FindCautions(mPieces));
    }

    std::string OfMessage(const std::string& message, bool isCut) const
    {
        if (mPieces.empty()) throw std::invalid_argument("a message needs a pattern");
        const Trace trace = TraceMatch(mPieces, message);
        std::string lines;
        for (const Take& take : trace.mTakes) {
            const std::string piece =
                take.mPiece ? std::to_string(*take.mPiece + 1) : std::string("space");
            lines += piece + ' ' + AlwaysQuoted(take.mSpan.Of(message)) + '\n';
        }
        std::vector<ValueRisk> risks = FindValueRisks(mPieces);
        std::erase_if(risks, [&](const ValueRisk& risk) {
            return !MayBeTrue(risk, mPieces[risk.mPiece], message);
        });
        if (!trace.mRefusedBy) {
            return lines + CautionLines(FindValueCautions(mPieces, risks, message, trace));
        }
        const Miss miss = ExplainMiss(mPieces, message, trace, isCut);
        return lines + miss.mVerdict + "\nwanted: " + miss.mWanted + "\nfound: " + miss.mFound +
               '\n' + Lines("hint", miss.mHints);
    }

    // input: with \p for a pause.
    static std::string OfBytes(std::string_view input)
    {
        ByteSurvey survey;
        for (std::size_t pause; (pause = input.find("\\p")) != std::string_view::npos;) {
            survey.Add(Unescaped(input.substr(0, pause)));
            survey.AddPause();
            input.remove_prefix(pause + 2);
        }
        survey.Add(Unescaped(input));
        const Survey result = survey.Result();
        return std::to_string(result.mMessages) + " messages of " +
               std::to_string(result.mShortest) + " to " + std::to_string(result.mLongest) +
               (result.mIsText ? " bytes of text\n" : " bytes\n") +
               Lines("finds", Findings(result));
    }

    Pieces mPieces;
};

TEST(Explain, SaysWhatIsRecorded)
{
    Speaker speaker;
    ExpectTranscript(
        WORD_SIFTER_EXPLANATIONS,
        [&](std::string_view word, const std::string& input) { return speaker.Say(word, input); });
}

}  // namespace
