#include <cmath>
#include <nlohmann/json.hpp>

#include "tools/miss_explainer.h"
#include "tools/output/result_printer.h"
#include "tools/output/text_forms.h"

namespace NSift {

namespace {

using Json = nlohmann::ordered_json;

// Bytes that aren't UTF-8 have no string in JSON, and go out as their hexadecimal digits.
Json TextJson(std::string_view text)
{
    if (IsUtf8(text)) return Json(std::string(text));
    return Json{{"hex", HexOf(text)}};
}

// An infinite float has no number in JSON.
Json ValueJson(const NStandIn::Value& value)
{
    if (value.mBits.mTag == NActor::kValueString) return TextJson(value.mText);
    if (value.mBits.mTag == NActor::kValueInteger) return Json(value.Integer());
    return std::isfinite(value.Float()) ? Json(value.Float()) : Json(TextOf(value));
}

Json StepsJson(const Trace& trace)
{
    Json steps = Json::array();
    for (const Step& step : trace.mSteps) {
        const Json piece = step.mPiece ? Json(*step.mPiece + 1) : Json(nullptr);
        steps.push_back({{"piece", piece},
                         {"start", step.mTook.mStart},
                         {"length", step.mTook.mEnd - step.mTook.mStart}});
    }
    return steps;
}

class JsonPrinter final : public ResultPrinter {
  public:
    JsonPrinter(std::ostream& stream, const Pieces& pieces) : mStream(stream), mPieces(pieces) {}

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
                    const Trace* trace) override
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

    void PrintMiss(std::size_t number, std::string_view message, const Trace& trace) override
    {
        const MissWords words = ExplainMiss(mPieces, message, trace);
        Print({{"type", "miss"},
               {"message", number},
               {"text", TextJson(message)},
               {"verdict", words.mVerdict},
               {"stopped_at", trace.mStoppedAt},
               {"piece", *trace.mRefusedBy + 1},
               {"source", TextJson(mPieces[*trace.mRefusedBy].mSource)},
               {"wanted", words.mWanted},
               {"found", words.mFound},
               {"hints", words.mHints},
               {"steps", StepsJson(trace)}});
    }

    void PrintLost(std::size_t number, std::string_view message) override
    {
        Print({{"type", "miss"},
               {"message", number},
               {"text", TextJson(message)},
               {"verdict", kLostWords}});
    }

    void PrintFault(const PatternFault& fault) override
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
    const Pieces& mPieces;
    std::vector<std::string> mNames;
};

}  // namespace

std::unique_ptr<ResultPrinter> MakeJsonPrinter(std::ostream& stream, const Pieces& pieces)
{
    return std::make_unique<JsonPrinter>(stream, pieces);
}

}  // namespace NSift
