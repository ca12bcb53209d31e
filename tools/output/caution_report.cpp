#include "tools/output/caution_report.h"

#include <algorithm>
#include <iostream>
#include <limits>

#include "Common/Explain/cautions.h"

namespace NSift {

using NExplain::Caution;
using NExplain::ValueRisk;

CautionReport::CautionReport(const NExplain::Pieces& pieces, ResultPrinter& printer)
    : mPieces(pieces), mPrinter(printer), mRisks(NExplain::FindValueRisks(pieces))
{
}

void CautionReport::ReportPattern(bool isSilent)
{
    for (const Caution& caution : NExplain::FindCautions(mPieces)) {
        mPrinter.PrintCaution(caution, 0);
        if (isSilent && !MakesValuesWrong(caution.mKind)) continue;
        std::cerr << "sift: warning: piece " << caution.mPiece + 1 << ": " << caution.mText << '\n';
    }
}

void CautionReport::CheckValues(std::size_t number, std::string_view message,
                                const Outputs& outputs)
{
    const bool mayBeWrong = std::any_of(mRisks.begin(), mRisks.end(), [&](const ValueRisk& risk) {
        return MayBeTrue(risk, mPieces[risk.mPiece], message) && MayBeWrong(risk, outputs);
    });
    if (!mayBeWrong) return;
    const NExplain::Trace trace = NExplain::TraceMatch(mPieces, message);
    if (trace.mRefusedBy) return;
    for (const Caution& caution : FindValueCautions(mPieces, mRisks, message, trace)) {
        std::cout.flush();
        std::cerr << "sift: warning: message " << number << ", piece " << caution.mPiece + 1 << ": "
                  << caution.mText << '\n';
        mPrinter.PrintCaution(caution, number);
        const auto isReported = [&caution](const ValueRisk& risk) {
            return risk.mKind == caution.mKind && risk.mPiece == caution.mPiece;
        };
        mRisks.erase(std::remove_if(mRisks.begin(), mRisks.end(), isReported), mRisks.end());
    }
}

// A number that was clamped or had no digit shows it, so that most messages need no trace.
bool CautionReport::MayBeWrong(const ValueRisk& risk, const Outputs& outputs) const
{
    const bool isNoDigit = risk.mKind == NExplain::kCautionNoDigit;
    if (risk.mKind != NExplain::kCautionClamped && !isNoDigit) return true;
    const std::size_t output = mPieces[risk.mPiece].mFirstCapture + 1;
    if (output >= outputs.size()) return false;
    const NStandIn::Value& value = outputs[output].mValue;
    using Limits = std::numeric_limits<std::int32_t>;
    const bool isFloat = value.mBits.mTag == NActor::kValueFloat;
    if (isNoDigit) return isFloat ? value.Float() == 0 : value.Integer() == 0;
    if (isFloat) return value.Float() == Limits::max();
    return value.Integer() == Limits::max() || value.Integer() == Limits::min();
}

}  // namespace NSift
