#include "tools/output/result_printer.h"

#include <map>

namespace NSift {

namespace {

class CountPrinter final : public ResultPrinter {
  public:
    explicit CountPrinter(std::ostream& stream) : mStream(stream) {}

    void PrintMatch(const Message& /*message*/, const Outputs& /*outputs*/) override {}
    void PrintEnd(const Counts& counts) override { mStream << counts.mMatched << '\n'; }

  private:
    std::ostream& mStream;
};

}  // namespace

const char* TypeOf(const NStandIn::Property& output)
{
    switch (output.mValue.mBits.mTag) {
        case NActor::kValueString: return "string";
        case NActor::kValueFloat: return "float";
        default: return "integer";
    }
}

std::vector<std::string> UniqueNames(const Outputs& outputs)
{
    std::map<std::string, int> uses;
    for (const NStandIn::Property& output : outputs) {
        ++uses[output.mName];
        ++uses[output.mId];
    }
    std::vector<std::string> names;
    for (std::size_t i = 1; i < outputs.size(); ++i) {
        const NStandIn::Property& output = outputs[i];
        const bool isTaken = output.mName.empty() || uses[output.mName] > 1;
        names.push_back(isTaken ? output.mId : output.mName);
    }
    return names;
}

std::unique_ptr<ResultPrinter> MakeCountPrinter(std::ostream& stream)
{
    return std::make_unique<CountPrinter>(stream);
}

}  // namespace NSift
