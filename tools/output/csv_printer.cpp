#include "tools/output/result_printer.h"
#include "tools/output/value_text.h"

namespace NSift {

namespace {

// Quotes a text that contains a separator or a quote, and doubles each quote in it.
std::string Field(const std::string& text)
{
    if (text.find_first_of("\",\r\n") == std::string::npos) return text;
    std::string field = "\"";
    for (const char c : text) field += c == '"' ? std::string("\"\"") : std::string(1, c);
    return field + '"';
}

class CsvPrinter final : public ResultPrinter {
  public:
    explicit CsvPrinter(std::ostream& stream) : mStream(stream) {}

    void PrintStart(const Outputs& outputs) override
    {
        std::vector<std::string> names = UniqueNames(outputs);
        if (names.empty()) names.push_back(outputs[0].mName);
        for (std::size_t i = 0; i < names.size(); ++i) {
            mStream << (i > 0 ? "," : "") << Field(names[i]);
        }
        mStream << '\n';
    }

    void PrintMatch(std::size_t /*number*/, std::string_view /*message*/, const Outputs& outputs,
                    const NExplain::Trace* /*trace*/) override
    {
        const std::size_t first = outputs.size() > 1 ? 1 : 0;
        for (std::size_t i = first; i < outputs.size(); ++i) {
            const NStandIn::Value& value = outputs[i].mValue;
            const bool isString = value.mBits.mTag == NActor::kValueString;
            mStream << (i > first ? "," : "") << (isString ? Field(value.mText) : TextOf(value));
        }
        mStream << '\n';
    }

  private:
    std::ostream& mStream;
};

}  // namespace

std::unique_ptr<ResultPrinter> MakeCsvPrinter(std::ostream& stream)
{
    return std::make_unique<CsvPrinter>(stream);
}

}  // namespace NSift
