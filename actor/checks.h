// Failed checks, and the wall that no exception passes: the ways in which trouble inside a
// callback reaches the host.

#pragma once

#include <cstdint>
#include <utility>

#include "actor_info.h"
#include "host_interface.h"

namespace NActor {

// Gives held. Where it is false, tells the host first: text is what should have held, line the
// source line of the check. The host's report may return, and the caller then goes on.
inline bool Check(const HostContext* context, bool held, const char* text, std::int32_t line)
{
    if (!held) context->mCallbacks->ReportAssertion(text, kDisplayName, line);
    return held;
}

// Runs the work of a callback. Whatever it throws ends here and is reported as "false", with line
// as its place: the engine's exceptions have no common base with the standard ones.
template <typename Work>
void RunGuarded(const HostContext* context, std::int32_t line, Work&& work) noexcept
{
    try {
        std::forward<Work>(work)();
    } catch (...) {
        Check(context, false, "false", line);
    }
}

}  // namespace NActor
