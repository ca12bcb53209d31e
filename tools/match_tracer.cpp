#include "match_tracer.h"

#include "Common/Pattern/pattern_whitespace_element.h"

namespace NSift {

namespace {

using NPattern::Byte;
using NPattern::Element;

// The rules of a whole match: in order, each from where the last one stopped, and none on a message
// that is used up.
class Follower {
  public:
    Follower(std::string_view message, Trace& outTrace) : mMessage(message), mTrace(outTrace) {}

    bool Follow(Element& element, std::optional<std::size_t> piece)
    {
        const std::size_t start = mTrace.mStoppedAt;
        if (start == mMessage.size()) return false;
        const auto* const data = reinterpret_cast<const Byte*>(mMessage.data());
        const Byte* const rest =
            element.Match(data + start, static_cast<std::uint32_t>(mMessage.size() - start));
        if (rest == nullptr) return false;
        mTrace.mStoppedAt = static_cast<std::size_t>(rest - data);
        if (mTrace.mStoppedAt != start)
            mTrace.mSteps.push_back({piece, {start, mTrace.mStoppedAt}});
        return true;
    }

  private:
    std::string_view mMessage;
    Trace& mTrace;
};

}  // namespace

Trace TraceMatch(const Pieces& pieces, std::string_view message)
{
    Trace trace;
    Follower follower(message, trace);
    NPattern::WhitespaceElement space;
    for (std::size_t p = 0; p < pieces.size(); ++p) {
        const bool matched = (!pieces[p].mSkipsSpace || follower.Follow(space, std::nullopt)) &&
                             follower.Follow(*pieces[p].mElement, p);
        if (!matched) {
            trace.mRefusedBy = p;
            break;
        }
    }
    return trace;
}

}  // namespace NSift
