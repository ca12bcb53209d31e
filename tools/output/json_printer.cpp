#include <cmath>
#include <map>

#include "Common/Explain/value_cautions.h"
#include "tools/output/json_text.h"
#include "tools/output/result_printer.h"
#include "tools/output/value_text.h"

namespace NSift {

namespace {

// The functions below write ordinary values as the library writes them, and leave the others to it.

void AppendString(const std::string& text, std::string& ioLine)
{
    if (IsPlain(text)) {
        AppendInQuotes(text, ioLine);
    } else {
        ioLine += TextJson(text).dump();
    }
}

// JSON has no number for an infinite float.
void AppendFloat(const NStandIn::Value& value, std::string& ioLine)
{
    if (!std::isfinite(value.Float())) {
        std::string text;
        AppendText(value, text);
        AppendInQuotes(text, ioLine);
    } else if (!AppendShortFloat(value.Float(), 1, ioLine)) {
        ioLine += Json(value.Float()).dump();
    }
}

void AppendValue(const NStandIn::Value& value, std::string& ioLine)
{
    switch (value.mBits.mTag) {
        case NActor::kValueString: return AppendString(value.mText, ioLine);
        case NActor::kValueInteger: return AppendInteger(value.Integer(), ioLine);
        default: return AppendFloat(value, ioLine);
    }
}

// A member of the object of values.
struct Member {
    std::string mKey;     // with the colon after it, and the comma before it unless it is the first
    std::size_t mOutput;  // index
};

// Of outputs with the same name, the first determines the position and the last the value. Only
// outputs with numbers too great for an id of their own have the same name.
std::vector<Member> MembersFor(const Outputs& outputs)
{
    std::vector<Member> members;
    std::map<std::string, std::size_t> positions;  // in members
    std::size_t output = 1;
    for (const std::string& name : UniqueNames(outputs)) {
        const auto [found, isNew] = positions.emplace(name, members.size());
        if (isNew) {
            std::string key(members.empty() ? "" : ",");
            members.push_back({key.append(Json(name).dump()).append(1, ':'), 0});
        }
        members[found->second].mOutput = output++;
    }
    return members;
}

Json MissedMessageJson(const Message& message)
{
    Json line = {{"type", "miss"}, {"message", message.mNumber}};
    if (!message.mFile.empty())
        line.update({{"file", TextJson(message.mFile)}, {"line", message.mLine}});
    line.update({{"text", TextJson(message.mText)}});
    return line;
}

class JsonPrinter final : public ResultPrinter {
  public:
    JsonPrinter(std::ostream& stream, const NExplain::Pieces& pieces)
        : mStream(stream), mPieces(pieces), mRisks(NExplain::FindValueRisks(pieces))
    {
    }

    void PrintStart(const Outputs& outputs) override { mMembers = MembersFor(outputs); }

    void PrintOutputs(const Outputs& outputs) override
    {
        for (std::size_t i = 1; i < outputs.size(); ++i) {
            Print({{"type", "output"},
                   {"name", outputs[i].mName},
                   {"value", TypeOf(outputs[i])},
                   {"id", outputs[i].mId}});
        }
    }

    void PrintMatch(const Message& message, const Outputs& outputs) override
    {
        mLine = R"({"type":"match","message":)";
        AppendInteger(static_cast<std::int64_t>(message.mNumber), mLine);
        mLine += R"(,"values":{)";
        for (const Member& member : mMembers) {
            mLine += member.mKey;
            AppendValue(outputs[member.mOutput].mValue, mLine);
        }
        mLine += '}';
        if (message.mRest) mLine += R"(,"rest":)" + TextJson(*message.mRest).dump();
        if (message.mTrace != nullptr) {
            mLine += R"(,"text":)" + TextJson(message.mText).dump();
            mLine += R"(,"steps":)" + StepsJson(*message.mTrace).dump();
            AppendCautions(message.mText, *message.mTrace);
        }
        mLine += "}\n";
        mStream.write(mLine.data(), static_cast<std::streamsize>(mLine.size()));
    }

    void PrintMiss(const Message& message, const NExplain::Miss& miss) override
    {
        Json line = MissedMessageJson(message);
        line.update(MissJson(mPieces, *message.mTrace, miss));
        Print(line);
    }

    void PrintLost(const Message& message) override
    {
        Json line = MissedMessageJson(message);
        line.update({{"verdict", NExplain::kLostVerdict}});
        Print(line);
    }

    void PrintFault(const NExplain::Fault& fault) override
    {
        Json line{{"type", "error"}};
        line.update(FaultJson(fault));
        Print(line);
    }

    void PrintCaution(const NExplain::Caution& caution, std::size_t message) override
    {
        Json line{{"type", "caution"}};
        if (message != 0) line["message"] = message;
        line.update(CautionJson(caution));
        Print(line);
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

    void AppendCautions(std::string_view message, const NExplain::Trace& trace)
    {
        if (mRisks.empty()) return;
        Json cautions = Json::array();
        for (const NExplain::Caution& caution :
             NExplain::FindValueCautions(mPieces, mRisks, message, trace)) {
            cautions.push_back(CautionJson(caution));
        }
        if (!cautions.empty()) mLine += R"(,"cautions":)" + cautions.dump();
    }

    std::ostream& mStream;
    const NExplain::Pieces& mPieces;
    const std::vector<NExplain::ValueRisk> mRisks;
    std::vector<Member> mMembers;  // of the values of each match
    std::string mLine;             // reused, so that lines cost no allocation
};

}  // namespace

std::unique_ptr<ResultPrinter> MakeJsonPrinter(std::ostream& stream, const NExplain::Pieces& pieces)
{
    return std::make_unique<JsonPrinter>(stream, pieces);
}

}  // namespace NSift
