#include <algorithm>

#include "tools/miss_explainer.h"
#include "tools/output/result_printer.h"
#include "tools/output/text_forms.h"

namespace NSift {

namespace {

// name=value pairs in the order of the outputs; without any capture the trigger itself.
std::string ValuesOf(const Outputs& outputs, const Palette& palette)
{
    const std::size_t first = outputs.size() > 1 ? 1 : 0;
    std::string line;
    for (std::size_t i = first; i < outputs.size(); ++i) {
        if (i > first) line += ' ';
        line += palette.Paint(Role::kName, outputs[i].mName) + '=' + TextOf(outputs[i].mValue);
    }
    return line;
}

std::string Padded(const std::string& text, std::size_t columns)
{
    const std::size_t width = ColumnsOf(text);
    return text + std::string(columns > width ? columns - width : 0, ' ');
}

class TextPrinter final : public ResultPrinter {
  public:
    TextPrinter(std::ostream& stream, const Pieces& pieces, ViewForm view, const Palette& palette)
        : mStream(stream), mPieces(pieces), mView(view), mPalette(palette)
    {
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
                    const Trace* trace) override
    {
        if (trace == nullptr) {
            mStream << ValuesOf(outputs, mPalette) << '\n';
            return;
        }
        mStream << "message " << number << " matched: " << ValuesOf(outputs, mPalette) << '\n';
        PrintMessage(mStream, message, *trace, mView, mPalette);
        PrintSteps(message, outputs, *trace);
    }

    void PrintMiss(std::size_t number, std::string_view message, const Trace& trace) override
    {
        const MissWords words = ExplainMiss(mPieces, message, trace);
        mStream << "message " << number << ": " << mPalette.Paint(Role::kFault, words.mVerdict)
                << '\n';
        PrintMessage(mStream, message, trace, mView, mPalette);
        mStream << "  piece " << *trace.mRefusedBy + 1 << "  "
                << mPalette.Paint(Role::kName, Escaped(mPieces[*trace.mRefusedBy].mSource))
                << "\n  wanted   " << words.mWanted << "\n  found    " << words.mFound << '\n';
        for (const std::string& hint : words.mHints) mStream << "  hint     " << hint << '\n';
    }

    void PrintLost(std::size_t number, std::string_view message) override
    {
        mStream << "message " << number << ": " << mPalette.Paint(Role::kFault, kLostWords) << '\n';
        PrintMessage(mStream, message, Trace(), ViewForm::kHex, mPalette);
    }

  private:
    void PrintSteps(std::string_view message, const Outputs& outputs, const Trace& trace)
    {
        std::size_t width = 0;
        for (const Piece& piece : mPieces) {
            width = std::max(width, ColumnsOf(Escaped(piece.mSource)));
        }
        width = std::min<std::size_t>(width, 40);
        for (const Step& step : trace.mSteps) {
            const std::string took = TookWords(step.mTook.Of(message));
            if (!step.mPiece) {
                mStream << mPalette.Paint(Role::kAside, "  white space skipped: " + took) << '\n';
                continue;
            }
            const Piece& piece = mPieces[*step.mPiece];
            mStream << "  piece " << Padded(std::to_string(*step.mPiece + 1), 2) << ' '
                    << mPalette.Paint(Role::kName, Padded(Escaped(piece.mSource), width))
                    << "  took " << took;
            for (std::size_t c = 0; c < piece.mCaptures.size(); ++c) {
                // A host has outputs for so many captures and no more.
                const std::size_t output = piece.mFirstCapture + c + 1;
                if (output >= outputs.size()) break;
                mStream << (c == 0 ? ", gave " : " ") << outputs[output].mName << '='
                        << TextOf(outputs[output].mValue);
            }
            mStream << '\n';
        }
    }

    std::string TookWords(std::string_view took) const
    {
        if (mView == ViewForm::kText && !IsBinary(took)) return AlwaysQuoted(took);
        constexpr std::size_t kMost = 16;
        return HexOf(took.substr(0, kMost)) + (took.size() > kMost ? "..." : "");
    }

    std::ostream& mStream;
    const Pieces& mPieces;
    ViewForm mView;
    Palette mPalette;
};

}  // namespace

std::unique_ptr<ResultPrinter> MakeTextPrinter(std::ostream& stream, const Pieces& pieces,
                                               ViewForm view, const Palette& palette)
{
    return std::make_unique<TextPrinter>(stream, pieces, view, palette);
}

}  // namespace NSift
