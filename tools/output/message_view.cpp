#include "tools/output/message_view.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "Common/Explain/byte_text.h"
#include "Common/Pattern/pattern_bytes.h"

namespace NSift {

using NExplain::ColumnsOf;
using NExplain::Escaped;
using NExplain::HexOf;

namespace {

constexpr char kIndent[] = "  ";

// One character of the message, or a byte that isn't part of one, and its mark.
struct Cell {
    std::string mShown;
    std::string mMark;  // empty if no piece took it
};

std::string MarkAt(const NExplain::Trace& trace, std::size_t position)
{
    if (trace.mRefusedBy && position == trace.mStoppedAt) return "^";
    for (const NExplain::Take& take : trace.mTakes) {
        if (position < take.mSpan.mStart || position >= take.mSpan.mEnd) continue;
        return take.mPiece ? std::to_string(*take.mPiece + 1) : "-";
    }
    return "";
}

std::string Repeated(const std::string& mark, std::size_t columns)
{
    const char last = mark.empty() ? ' ' : mark.back();
    return std::string(columns, last);
}

void TrimEnd(std::string& ioText)
{
    while (!ioText.empty() && ioText.back() == ' ') ioText.pop_back();
}

void PrintMarks(std::ostream& stream, std::string marks, const Palette& palette)
{
    TrimEnd(marks);
    if (marks.empty()) return;
    const std::size_t caret = marks.find('^');
    const std::size_t end = caret == std::string::npos ? marks.size() : caret;
    stream << kIndent << palette.Paint(Role::kAside, marks.substr(0, end))
           << palette.Paint(Role::kMark, marks.substr(end)) << '\n';
}

std::vector<Cell> CellsOf(std::string_view message, const NExplain::Trace& trace)
{
    std::vector<Cell> cells;
    for (std::size_t position = 0; position < message.size();) {
        const std::size_t length =
            std::max<std::size_t>(NExplain::Utf8Length(message, position), 1);
        cells.push_back({Escaped(message.substr(position, length)), MarkAt(trace, position)});
        position += length;
    }
    if (trace.mRefusedBy && trace.mStoppedAt == message.size()) cells.push_back({" ", "^"});
    return cells;
}

void PrintText(std::ostream& stream, std::string_view message, const NExplain::Trace& trace,
               const Palette& palette)
{
    constexpr std::size_t kMost = 90;    // characters shown
    constexpr std::size_t kBefore = 60;  // of those, before the place where it stopped
    const std::vector<Cell> cells = CellsOf(message, trace);
    const auto stop = std::find_if(cells.begin(), cells.end(),
                                   [](const Cell& cell) { return cell.mMark == "^"; });
    const auto place =
        stop == cells.end() ? std::size_t{0} : static_cast<std::size_t>(stop - cells.begin());
    const std::size_t first = cells.size() > kMost && place > kBefore ? place - kBefore : 0;
    const std::size_t last = std::min(cells.size(), first + kMost);

    std::string shown = first > 0 ? "... " : "";
    std::string marks(shown.size(), ' ');
    for (std::size_t c = first; c < last; ++c) {
        shown += cells[c].mShown;
        marks += Repeated(cells[c].mMark, ColumnsOf(cells[c].mShown));
    }
    if (last < cells.size()) shown += " ...";
    TrimEnd(shown);
    stream << kIndent << shown << '\n';
    PrintMarks(stream, marks, palette);
}

constexpr std::size_t kRow = 16;  // bytes

// Bytes on the left, the printable ones as text on the right.
void PrintHexRow(std::ostream& stream, std::string_view message, std::size_t start,
                 const NExplain::Trace& trace, const Palette& palette)
{
    std::array<char, 16> offset{};
    std::snprintf(offset.data(), offset.size(), "%04zX ", start);
    std::string shown = offset.data();
    std::string marks(shown.size(), ' ');
    std::string text;
    for (std::size_t position = start; position < start + kRow; ++position) {
        const bool isInside = position < message.size();
        shown += isInside ? ' ' + HexOf(message.substr(position, 1)) : "   ";
        if (position > message.size()) continue;
        const std::string mark = MarkAt(trace, position);
        const std::string wide = mark == "^" ? "^^" : mark;
        marks += std::string(3 - std::min<std::size_t>(wide.size(), 3), ' ') + wide;
        if (!isInside) continue;
        const char c = message[position];
        text += NPattern::IsPrint(static_cast<NPattern::Byte>(c)) ? c : '.';
    }
    stream << kIndent << shown << "  |" << text << "|\n";
    PrintMarks(stream, marks, palette);
}

void PrintHex(std::ostream& stream, std::string_view message, const NExplain::Trace& trace,
              const Palette& palette)
{
    constexpr std::size_t kRowsBefore = 4;
    constexpr std::size_t kMostRows = 8;
    const std::size_t place = trace.mRefusedBy ? trace.mStoppedAt / kRow : 0;
    const std::size_t rows = message.size() / kRow + 1;
    const std::size_t first = place > kRowsBefore ? place - kRowsBefore : 0;
    const std::size_t last = std::min(rows, first + kMostRows);
    if (first > 0) stream << kIndent << "...\n";
    for (std::size_t row = first; row < last; ++row) {
        // A row after the last byte is needed only for a mark.
        if (row * kRow == message.size() && row != place) break;
        PrintHexRow(stream, message, row * kRow, trace, palette);
    }
    if (last < rows) stream << kIndent << "...\n";
}

}  // namespace

void PrintMessage(std::ostream& stream, std::string_view message, const NExplain::Trace& trace,
                  ViewForm form, const Palette& palette)
{
    if (message.empty()) return;
    if (form == ViewForm::kHex || NExplain::IsBinary(message)) {
        PrintHex(stream, message, trace, palette);
    } else {
        PrintText(stream, message, trace, palette);
    }
}

}  // namespace NSift
