// Keeps track of whose code runs, so that a test can count what the actor does by itself.

#pragma once

#include <utility>

namespace NStandIn {

enum class Side { kHost, kActor };

// Passes the turn to one side for as long as it lives, and then back to the side that had it, also
// when an exception passes. Starts with the host.
class Turn {
  public:
    explicit Turn(Side side) : mOuter(std::exchange(sSide, side)) {}
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn() { sSide = mOuter; }

    static bool IsHosts() { return sSide == Side::kHost; }

  private:
    static inline Side sSide = Side::kHost;

    Side mOuter;
};

}  // namespace NStandIn
