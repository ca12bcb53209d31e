// A host that does next to nothing, so that what is measured is the actor: it keeps the number of
// outputs and counts the values that it is given.

#pragma once

#include <cstddef>
#include <string>

#include "actor/actor_info.h"
#include "actor/host_interface.h"

namespace NBench {

// One instance on a host of its own. Only one can be at a time. A check that fails in the actor
// ends the program.
class CountingHost {
  public:
    CountingHost();
    CountingHost(const CountingHost&) = delete;
    CountingHost& operator=(const CountingHost&) = delete;
    ~CountingHost();

    void SetParsingString(const std::string& parsingString);
    // c: as it would come from the input eom_char.
    void SetEomChar(char c);
    // text: made by TextValue.
    void Deliver(const std::string& text);

    // The bytes of a string of the host's with this text: what stands before it, and the text.
    static std::string TextValue(const std::string& text);

    // How often a value, the trigger included, was set so far.
    std::size_t SetValues() const;

  private:
    NActor::HostCallbacks mCallbacks{};
    NActor::HostContext mContext{};
    NActor::ActorInfo mInfo{};
};

}  // namespace NBench
