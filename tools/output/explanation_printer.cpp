#include "tools/output/explanation_printer.h"

#include <algorithm>
#include <string>

#include "Common/Explain/byte_text.h"
#include "Common/Explain/cautions.h"
#include "Common/Explain/meaning.h"

namespace NSift {

namespace {

constexpr std::size_t kColumn = 9;  // where the text starts

void PrintPiece(std::ostream& stream, const NExplain::Piece& piece, std::size_t number,
                const Palette& palette)
{
    std::string title = "piece " + std::to_string(number);
    title.resize(std::max(kColumn, title.size() + 1), ' ');
    const NExplain::Meaning meaning = NExplain::MeaningOf(piece);
    const std::string indent(kColumn, ' ');
    stream << title << palette.Paint(Role::kName, NExplain::Escaped(piece.mSource)) << '\n'
           << indent << "takes " << meaning.mTakes << '\n';
    for (const NExplain::CaptureMeaning& capture : meaning.mCaptures) {
        const std::string name =
            capture.mName.empty() ? "an output without a name" : '"' + capture.mName + '"';
        stream << indent << "captures " << name << ", " << capture.mValue << '\n';
    }
}

// Where white space is skipped; empty if there is nothing to say.
std::string SkippedWords(const NExplain::Pieces& pieces)
{
    std::string exceptions;
    std::size_t skips = 0;
    for (std::size_t p = 1; p < pieces.size(); ++p) {
        if (pieces[p].mSkipsSpace) {
            ++skips;
        } else {
            exceptions += (exceptions.empty() ? "" : ", ") + std::to_string(p + 1);
        }
    }
    if (pieces.size() < 2) return "";
    if (skips == 0) return "White space is not skipped between these pieces.\n";
    if (exceptions.empty()) return "White space between two pieces is skipped.\n";
    return "White space between two pieces is skipped, except before piece " + exceptions +
           ":\nit is skipped only between two pieces that read text.\n";
}

}  // namespace

void PrintExplanation(std::ostream& stream, const NExplain::Pieces& pieces, const Palette& palette)
{
    if (pieces.empty()) {
        stream << "The parsing string is empty: it matches no message.\n";
        return;
    }
    const std::vector<NExplain::Caution> cautions = NExplain::FindCautions(pieces);
    auto caution = cautions.begin();
    for (std::size_t p = 0; p < pieces.size(); ++p) {
        PrintPiece(stream, pieces[p], p + 1, palette);
        for (; caution != cautions.end() && caution->mPiece == p; ++caution) {
            stream << std::string(kColumn, ' ') << "warning: " << caution->mText << '\n';
        }
    }
    stream << "A message matches if each piece finds what it takes, one after the other, from the "
              "first\ncharacter on. Whatever is left after the last piece does not matter.\n"
           << SkippedWords(pieces);
}

}  // namespace NSift
