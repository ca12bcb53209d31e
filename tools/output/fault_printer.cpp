#include "tools/output/fault_printer.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "Common/Explain/byte_text.h"

namespace NSift {

using NExplain::ColumnsOf;
using NExplain::Escaped;

namespace {

// Returns the line around place, cut if it is long, and the column of place in it.
std::string_view LineAround(std::string_view parseString, std::size_t place, std::size_t& outColumn)
{
    constexpr std::size_t kBefore = 70;
    constexpr std::size_t kMost = 100;
    const std::size_t lineStart =
        place == 0 ? 0 : parseString.rfind('\n', place - 1) + 1;  // npos + 1
    std::size_t start = std::max(lineStart, place > kBefore ? place - kBefore : 0);
    while (start < place && (parseString[start] & 0xC0) == 0x80) ++start;
    outColumn = place - start;
    const std::string_view rest = parseString.substr(start);
    return rest.substr(0, std::min(rest.find('\n', outColumn), kMost));
}

}  // namespace

NExplain::Fault FaultOf(const std::string& parseString, const NStandIn::Validation& error)
{
    std::optional<NExplain::Fault> fault = NExplain::FindFault(parseString);
    if (fault) return *std::move(fault);
    // A plug-in of another version, or one without memory.
    return {NPattern::kErrorUnspecified, error.mMessage, parseString.size(), 0, {}, {}};
}

void PrintFault(std::ostream& stream, const std::string& parseString, const NExplain::Fault& fault,
                const Palette& palette)
{
    std::size_t column = 0;
    const std::string_view line = LineAround(parseString, fault.mStart, column);
    const std::string before = Escaped(line.substr(0, column));
    const std::string marked = Escaped(line.substr(column, fault.mLength));
    const std::string carets(std::max<std::size_t>(ColumnsOf(marked), 1), '^');
    stream << palette.Paint(Role::kFault, Escaped(fault.mMessage)) << "\n  " << Escaped(line)
           << "\n  " << std::string(ColumnsOf(before), ' ') << palette.Paint(Role::kMark, carets)
           << "\nat byte " << fault.mStart << " of the parsing string\n";
    for (const std::string& hint : fault.mHints) stream << "hint: " << hint << '\n';
    // A list of everything possible would only bury a hint.
    if (fault.mNeeds.empty() || !fault.mHints.empty()) return;
    stream << "no piece can start there; each form would have needed:\n";
    for (const std::string& need : fault.mNeeds) stream << "  " << need << '\n';
}

}  // namespace NSift
