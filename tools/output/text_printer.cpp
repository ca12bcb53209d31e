#include <algorithm>

#include "Common/Explain/byte_text.h"
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

class TextPrinter final : public ResultPrinter {
  public:
    TextPrinter(std::ostream& stream, const NExplain::Pieces& pieces, ViewForm view,
                const Palette& palette)
        : mStream(stream), mPieces(pieces), mView(view), mPalette(palette)
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

    void PrintMatch(std::size_t number, std::string_view message, const Outputs& outputs,
                    const NExplain::Trace* trace) override
    {
        if (trace != nullptr) mStream << "message " << number << " matched: ";
        PrintValues(outputs);
        if (trace == nullptr) return;
        PrintMessage(mStream, message, *trace, mView, mPalette);
        PrintTakes(message, outputs, *trace);
    }

    void PrintMiss(std::size_t number, std::string_view message, const NExplain::Trace& trace,
                   const NExplain::Miss& miss) override
    {
        mStream << "message " << number << ": " << mPalette.Paint(Role::kFault, miss.mVerdict)
                << '\n';
        PrintMessage(mStream, message, trace, mView, mPalette);
        mStream << "  piece " << *trace.mRefusedBy + 1 << "  "
                << mPalette.Paint(Role::kName, Escaped(mPieces[*trace.mRefusedBy].mSource))
                << "\n  wanted   " << miss.mWanted << "\n  found    " << miss.mFound << '\n';
        for (const std::string& hint : miss.mHints) mStream << "  hint     " << hint << '\n';
    }

    void PrintLost(std::size_t number, std::string_view message) override
    {
        mStream << "message " << number << ": " << mPalette.Paint(Role::kFault, kLostWords) << '\n';
        PrintMessage(mStream, message, NExplain::Trace(), ViewForm::kHex, mPalette);
    }

  private:
    // name=value pairs in the order of the outputs; the trigger if there are no captures.
    void PrintValues(const Outputs& outputs)
    {
        mLine.clear();
        for (std::size_t i = 0; i < mLabels.size(); ++i) {
            mLine += mLabels[i];
            AppendText(outputs[mFirst + i].mValue, mLine);
        }
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
