#include "tools/output/result_printer.h"
#include "tools/output/value_text.h"

namespace NSift {

namespace {

// Quotes a text that contains a separator or a quote, and doubles each quote in it.
void AppendField(std::string_view text, std::string& ioLine)
{
    if (text.find_first_of("\",\r\n") == text.npos) {
        ioLine += text;
        return;
    }
    ioLine += '"';
    for (const char c : text) ioLine.append(c == '"' ? 2 : 1, c);
    ioLine += '"';
}

class CsvPrinter final : public ResultPrinter {
  public:
    explicit CsvPrinter(std::ostream& stream) : mStream(stream) {}

    void PrintStart(const Outputs& outputs) override
    {
        std::vector<std::string> names = UniqueNames(outputs);
        if (names.empty()) names.push_back(outputs[0].mName);
        for (const std::string& name : names) {
            AppendField(name, mLine);
            mLine += ',';
        }
        PrintLine();
    }

    void PrintMatch(const Message& /*message*/, const Outputs& outputs) override
    {
        const std::size_t first = outputs.size() > 1 ? 1 : 0;
        for (std::size_t i = first; i < outputs.size(); ++i) {
            const NStandIn::Value& value = outputs[i].mValue;
            const bool isString = value.mBits.mTag == NActor::kValueString;
            if (isString) {
                AppendField(value.mText, mLine);
            } else {
                AppendText(value, mLine);
            }
            mLine += ',';
        }
        PrintLine();
    }

  private:
    // Each field of the line is followed by a comma.
    void PrintLine()
    {
        mLine.back() = '\n';
        mStream.write(mLine.data(), static_cast<std::streamsize>(mLine.size()));
        mLine.clear();
    }

    std::ostream& mStream;
    std::string mLine;  // reused, so that lines cost no allocation
};

}  // namespace

std::unique_ptr<ResultPrinter> MakeCsvPrinter(std::ostream& stream)
{
    return std::make_unique<CsvPrinter>(stream);
}

}  // namespace NSift
