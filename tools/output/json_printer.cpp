#include <cmath>
#include <nlohmann/json.hpp>

#include "Common/Explain/byte_text.h"
#include "tools/output/result_printer.h"
#include "tools/output/value_text.h"

namespace NSift {

namespace {

using Json = nlohmann::ordered_json;
using NExplain::HexOf;

// JSON has no string for bytes that are not UTF-8; their hexadecimal digits replace it.
Json TextJson(std::string_view text)
{
    if (NExplain::IsUtf8(text)) return Json(std::string(text));
    return Json{{"hex", HexOf(text)}};
}

// JSON has no number for an infinite float.
Json ValueJson(const NStandIn::Value& value)
{
    if (value.mBits.mTag == NActor::kValueString) return TextJson(value.mText);
    if (value.mBits.mTag == NActor::kValueInteger) return Json(value.Integer());
    return std::isfinite(value.Float()) ? Json(value.Float()) : Json(TextOf(value));
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

class JsonPrinter final : public ResultPrinter {
  public:
    JsonPrinter(std::ostream& stream, const NExplain::Pieces& pieces)
        : mStream(stream), mPieces(pieces)
    {
    }

    void PrintStart(const Outputs& outputs) override { mNames = UniqueNames(outputs); }

    void PrintOutputs(const Outputs& outputs) override
    {
        for (std::size_t i = 1; i < outputs.size(); ++i) {
            Print({{"type", "output"},
                   {"name", outputs[i].mName},
                   {"value", TypeOf(outputs[i])},
                   {"id", outputs[i].mId}});
        }
    }

    void PrintMatch(std::size_t number, std::string_view message, const Outputs& outputs,
                    const NExplain::Trace* trace) override
    {
        Json values = Json::object();
        for (std::size_t i = 0; i < mNames.size(); ++i) {
            values[mNames[i]] = ValueJson(outputs[i + 1].mValue);
        }
        Json line = {{"type", "match"}, {"message", number}, {"values", std::move(values)}};
        if (trace != nullptr) {
            line["text"] = TextJson(message);
            line["steps"] = StepsJson(*trace);
        }
        Print(line);
    }

    void PrintMiss(std::size_t number, std::string_view message, const NExplain::Trace& trace,
                   const NExplain::Miss& miss) override
    {
        Print({{"type", "miss"},
               {"message", number},
               {"text", TextJson(message)},
               {"verdict", miss.mVerdict},
               {"stopped_at", trace.mStoppedAt},
               {"piece", *trace.mRefusedBy + 1},
               {"source", TextJson(mPieces[*trace.mRefusedBy].mSource)},
               {"wanted", miss.mWanted},
               {"found", miss.mFound},
               {"hints", miss.mHints},
               {"steps", StepsJson(trace)}});
    }

    void PrintLost(std::size_t number, std::string_view message) override
    {
        Print({{"type", "miss"},
               {"message", number},
               {"text", TextJson(message)},
               {"verdict", kLostWords}});
    }

    void PrintFault(const NExplain::Fault& fault) override
    {
        Print({{"type", "error"},
               {"error", TextJson(fault.mMessage)},
               {"start", fault.mStart},
               {"length", fault.mLength},
               {"hints", fault.mHints},
               {"needs", fault.mNeeds}});
    }

    void PrintError(const std::string& error) override
    {
        Print({{"type", "error"}, {"error", TextJson(error)}});
    }

    void PrintEnd(const Counts& counts) override
    {
        Print({{"type", "summary"},
               {"messages", counts.mMessages},
               {"matched", counts.mMatched},
               {"missed", counts.mMessages - counts.mMatched}});
    }

  private:
    void Print(const Json& line) { mStream << line.dump() << '\n'; }

    std::ostream& mStream;
    const NExplain::Pieces& mPieces;
    std::vector<std::string> mNames;
};

}  // namespace

std::unique_ptr<ResultPrinter> MakeJsonPrinter(std::ostream& stream, const NExplain::Pieces& pieces)
{
    return std::make_unique<JsonPrinter>(stream, pieces);
}

}  // namespace NSift
