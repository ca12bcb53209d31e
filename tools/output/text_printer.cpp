#include <algorithm>

#include "Common/Explain/byte_text.h"
#include "Common/Explain/value_cautions.h"
#include "tools/output/result_printer.h"
#include "tools/output/value_text.h"

namespace NSift {

using NExplain::ColumnsOf;
using NExplain::Escaped;

namespace {

std::string Padded(const std::string& text, std::size_t columns)
{
    const std::size_t width = ColumnsOf(text);
    return text + std::string(columns > width ? columns - width : 0, ' ');
}

std::string Label(const Message& message)
{
    std::string label = "message " + std::to_string(message.mNumber);
    if (message.mFile.empty()) return label;
    return label + " (" + std::string(message.mFile) + " line " + std::to_string(message.mLine) +
           ')';
}

class TextPrinter final : public ResultPrinter {
  public:
    TextPrinter(std::ostream& stream, const NExplain::Pieces& pieces, ViewForm view,
                const Palette& palette)
        : mStream(stream),
          mPieces(pieces),
          mRisks(NExplain::FindValueRisks(pieces)),
          mView(view),
          mPalette(palette)
    {
    }

    void PrintStart(const Outputs& outputs) override
    {
        mFirst = outputs.size() > 1 ? 1 : 0;
        for (std::size_t i = mFirst; i < outputs.size(); ++i) {
            const std::string blank = i > mFirst ? " " : "";
            mLabels.push_back(blank + mPalette.Paint(Role::kName, outputs[i].mName) + '=');
        }
    }

    void PrintOutputs(const Outputs& outputs) override
    {
        if (outputs.size() == 1) {
            mStream << "no outputs but " << outputs[0].mName
                    << ", which every parsing string has\n";
        }
        std::size_t width = 0;
        for (std::size_t i = 1; i < outputs.size(); ++i) {
            width = std::max(width, outputs[i].mName.size());
        }
        for (std::size_t i = 1; i < outputs.size(); ++i) {
            mStream << mPalette.Paint(Role::kName, Padded(outputs[i].mName, width)) << "  "
                    << Padded(TypeOf(outputs[i]), 7) << "  " << outputs[i].mId << '\n';
        }
    }

    void PrintMatch(const Message& message, const Outputs& outputs) override
    {
        if (message.mTrace != nullptr) mStream << Label(message) << " matched: ";
        PrintValues(outputs, message);
        if (message.mTrace == nullptr) return;
        PrintMessage(mStream, message.mText, *message.mTrace, mView, mPalette);
        PrintTakes(message.mText, outputs, *message.mTrace);
        for (const NExplain::Caution& caution :
             NExplain::FindValueCautions(mPieces, mRisks, message.mText, *message.mTrace)) {
            mStream << mPalette.Paint(Role::kFault, "  warning") << ": piece " << caution.mPiece + 1
                    << ": " << caution.mText << '\n';
        }
    }

    void PrintMiss(const Message& message, const NExplain::Miss& miss) override
    {
        const NExplain::Trace& trace = *message.mTrace;
        mStream << Label(message) << ": " << mPalette.Paint(Role::kFault, miss.mVerdict) << '\n';
        PrintMessage(mStream, message.mText, trace, mView, mPalette);
        mStream << "  piece " << *trace.mRefusedBy + 1 << "  "
                << mPalette.Paint(Role::kName, Escaped(mPieces[*trace.mRefusedBy].mSource))
                << "\n  wanted   " << miss.mWanted << "\n  found    " << miss.mFound << '\n';
        for (const std::string& hint : miss.mHints) mStream << "  hint     " << hint << '\n';
    }

    void PrintLost(const Message& message) override
    {
        mStream << Label(message) << ": " << mPalette.Paint(Role::kFault, NExplain::kLostVerdict)
                << '\n';
        PrintMessage(mStream, message.mText, NExplain::Trace(), ViewForm::kHex, mPalette);
    }

  private:
    // name=value pairs in the order of the outputs, or the trigger if there are no captures; then
    // the rest.
    void PrintValues(const Outputs& outputs, const Message& message)
    {
        mLine.clear();
        for (std::size_t i = 0; i < mLabels.size(); ++i) {
            mLine += mLabels[i];
            AppendText(outputs[mFirst + i].mValue, mLine);
        }
        if (message.mRest && !message.mRest->empty())
            mLine += mPalette.Paint(Role::kAside, "  rest: " + TookWords(*message.mRest));
        mLine += '\n';
        mStream.write(mLine.data(), static_cast<std::streamsize>(mLine.size()));
    }

    void PrintTakes(std::string_view message, const Outputs& outputs, const NExplain::Trace& trace)
    {
        std::size_t width = 0;
        for (const NExplain::Piece& piece : mPieces) {
            width = std::max(width, ColumnsOf(Escaped(piece.mSource)));
        }
        width = std::min<std::size_t>(width, 40);
        for (const NExplain::Take& take : trace.mTakes) {
            const std::string took = TookWords(take.mSpan.Of(message));
            if (!take.mPiece) {
                mStream << mPalette.Paint(Role::kAside, "  white space skipped: " + took) << '\n';
                continue;
            }
            const NExplain::Piece& piece = mPieces[*take.mPiece];
            mStream << "  piece " << Padded(std::to_string(*take.mPiece + 1), 2) << ' '
                    << mPalette.Paint(Role::kName, Padded(Escaped(piece.mSource), width))
                    << "  took " << took;
            for (std::size_t c = 0; c < piece.mCaptures.size(); ++c) {
                // Captures past the last property number have no output.
                const std::size_t output = piece.mFirstCapture + c + 1;
                if (output >= outputs.size()) break;
                mLine = (c == 0 ? ", gave " : " ") + outputs[output].mName + '=';
                AppendText(outputs[output].mValue, mLine);
                mStream << mLine;
            }
            mStream << '\n';
        }
    }

    std::string TookWords(std::string_view took) const
    {
        if (mView == ViewForm::kText && !NExplain::IsBinary(took))
            return NExplain::AlwaysQuoted(took);
        constexpr std::size_t kMost = 16;
        return NExplain::HexOf(took.substr(0, kMost)) + (took.size() > kMost ? "..." : "");
    }

    std::ostream& mStream;
    const NExplain::Pieces& mPieces;
    const std::vector<NExplain::ValueRisk> mRisks;
    ViewForm mView;
    Palette mPalette;
    std::size_t mFirst = 0;            // index of the first output to print
    std::vector<std::string> mLabels;  // what precedes each value: " name=", painted
    std::string mLine;                 // reused, so that lines cost no allocation
};

}  // namespace

std::unique_ptr<ResultPrinter> MakeTextPrinter(std::ostream& stream, const NExplain::Pieces& pieces,
                                               ViewForm view, const Palette& palette)
{
    return std::make_unique<TextPrinter>(stream, pieces, view, palette);
}

}  // namespace NSift
