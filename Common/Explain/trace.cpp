#include "trace.h"

#include "Common/Pattern/pattern_whitespace_element.h"

namespace NExplain {

using NPattern::Byte;
using NPattern::Element;

namespace {

// The rules of a whole match: each element goes on where the last one stopped, and none gets a turn
// once the message is used up.
bool Follow(Element& element, std::optional<std::size_t> piece, std::string_view message,
            Trace& ioTrace)
{
    const std::size_t start = ioTrace.mStoppedAt;
    if (start == message.size()) return false;
    const auto* const data = reinterpret_cast<const Byte*>(message.data());
    const Byte* const rest =
        element.Match(data + start, static_cast<std::uint32_t>(message.size() - start));
    if (rest == nullptr) return false;
    ioTrace.mStoppedAt = static_cast<std::size_t>(rest - data);
    if (ioTrace.mStoppedAt != start) ioTrace.mTakes.push_back({piece, {start, ioTrace.mStoppedAt}});
    return true;
}

}  // namespace

Trace TraceMatch(const Pieces& pieces, std::string_view message)
{
    Trace trace;
    NPattern::WhitespaceElement space;
    for (std::size_t p = 0; p < pieces.size(); ++p) {
        const bool matched =
            (!pieces[p].mSkipsSpace || Follow(space, std::nullopt, message, trace)) &&
            Follow(*pieces[p].mElement, p, message, trace);
        if (!matched) {
            trace.mRefusedBy = p;
            break;
        }
    }
    return trace;
}

}  // namespace NExplain
