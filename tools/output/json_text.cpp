#include "tools/output/json_text.h"

#include <string>

#include "Common/Explain/byte_text.h"

namespace NSift {

Json TextJson(std::string_view text)
{
    if (NExplain::IsUtf8(text)) return Json(std::string(text));
    return Json{{"hex", NExplain::HexOf(text)}};
}

Json FaultJson(const NExplain::Fault& fault)
{
    return {{"error", TextJson(fault.mMessage)},
            {"start", fault.mStart},
            {"length", fault.mLength},
            {"hints", fault.mHints},
            {"needs", fault.mNeeds}};
}

Json CautionJson(const NExplain::Caution& caution)
{
    return {{"piece", caution.mPiece + 1}, {"caution", TextJson(caution.mText)}};
}

Json StepsJson(const NExplain::Trace& trace)
{
    Json steps = Json::array();
    for (const NExplain::Take& take : trace.mTakes) {
        const Json piece = take.mPiece ? Json(*take.mPiece + 1) : Json(nullptr);
        steps.push_back({{"piece", piece},
                         {"start", take.mSpan.mStart},
                         {"length", take.mSpan.mEnd - take.mSpan.mStart}});
    }
    return steps;
}

Json MissJson(const NExplain::Pieces& pieces, const NExplain::Trace& trace,
              const NExplain::Miss& miss)
{
    return {
        {"verdict", miss.mVerdict},       {"stopped_at", trace.mStoppedAt},
        {"piece", *trace.mRefusedBy + 1}, {"source", TextJson(pieces[*trace.mRefusedBy].mSource)},
        {"wanted", miss.mWanted},         {"found", miss.mFound},
        {"hints", miss.mHints},           {"steps", StepsJson(trace)}};
}

}  // namespace NSift
