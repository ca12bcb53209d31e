// A host that does almost nothing, so that benchmarks measure the actor. It keeps the number of
// outputs and counts the values that are set. Its blocks come from operator new, so that they count
// as allocations.

#pragma once

#include <cstddef>
#include <string>

#include "actor/actor_info.h"
#include "actor/host_interface.h"

namespace NBench {

// A host with one instance. Only one CountingHost may exist at a time. An assertion that the actor
// reports ends the program.
class CountingHost {
  public:
    CountingHost();
    CountingHost(const CountingHost&) = delete;
    CountingHost& operator=(const CountingHost&) = delete;
    ~CountingHost();

    void SetParsingString(const std::string& parsingString);
    // Sets the input eom_char to c.
    void SetEomChar(char c);
    // text: a result of TextValue.
    void Deliver(const std::string& text);

    // Returns the bytes of a HostString with this text: the bytes before the text, and the text.
    static std::string TextValue(const std::string& text);

    // Returns how many values have been set so far, including triggers.
    std::size_t SetValues() const;

  private:
    NActor::HostCallbacks mCallbacks{};
    NActor::HostContext mContext{};
    NActor::ActorInfo mInfo{};
};

}  // namespace NBench
