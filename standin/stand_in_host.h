// Plays the host where the real one is missing: for the tests, the fuzzer and sift. This is the one
// header to include.

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "actor/actor_info.h"
#include "actor/host_interface.h"
#include "dialog.h"
#include "host_accounts.h"
#include "instance.h"
#include "operation.h"
#include "property.h"

namespace NStandIn {

using GetActorInfoFunction = void (*)(void*, NActor::ActorInfo*);

// The kinds of property that only the host passes; kPropertyOutput is in host_interface.h.
inline constexpr NActor::PropertyKind kPropertyActor = 0;  // a help text of the actor itself
inline constexpr NActor::PropertyKind kPropertyInput = 1;

// How the host treats the memory that it passes to the actor's callbacks.
enum class HostMode {
    // Each callback gets a context and a table that are gone when it returns, and each delivery a
    // text of exactly its size. So the address sanitizer sees a use of old memory. For tests.
    kHostile,
    // One context, one table and one text are used for all callbacks. For speed.
    kPlain
};

class ContextRecords;

// Provides all twenty operations, and keeps accounts of what the actor does with them: properties,
// blocks, text handles and their locks, string values, reports. In both modes records come filled
// with garbage, blocks have exactly their size, and a text handle's bytes move each time they are
// locked.
//
// The operations get no reference to their host, so there is one host at a time, used from one
// thread. A second one aborts the program.
class StandInHost {
  public:
    // Calls getActorInfo once, and reads the actor's definition string.
    explicit StandInHost(GetActorInfoFunction getActorInfo, HostMode mode = HostMode::kHostile);
    StandInHost(const StandInHost&) = delete;
    StandInHost& operator=(const StandInHost&) = delete;
    // Closes the host.
    ~StandInHost();

    // Makes an instance and calls its CreateCallback. The host owns it until Close, even after it
    // has been disposed of.
    Instance& CreateInstance();

    // The next three run inside operations, and may call back into the actor. None may be replaced
    // while it runs. An exception from one of them leaves the operation, and so enters the actor;
    // the host stays usable.

    // Called at the start of each operation; true makes the operation fail. An operation that
    // returns an error or a pointer then returns an error or null, any other does nothing. Three
    // things can't fail: the count of outputs is always written, a report always recorded, and
    // what the actor gives back always taken. If the hook throws, the operation has no effect
    // except its line in the log.
    std::function<bool(Operation)> mHook;
    // Called each time an output was set, after it has its value.
    std::function<void(Instance&, std::uint16_t output)> mOutputListener;
    // Acts as the user in the text dialog; returns true to accept the text. If empty, each dialog
    // is cancelled.
    std::function<bool(Dialog&)> mDialogScript;

    // If true, a released block is handed out again for the next request of its size. Otherwise
    // every block is new, so that the address sanitizer sees the use of an old one.
    bool mReusesBlocks = false;
    // If set, GetPropertyCount returns it in place of the true count; may be negative.
    std::optional<std::int32_t> mClaimedOutputCount;

    // Clears the log, and adds a line for each operation from now on: its name and its main
    // arguments.
    void StartLog();
    const std::vector<std::string>& Log() const { return mAccounts.mLog; }

    const std::vector<Assertion>& Assertions() const { return mAccounts.mAssertions; }
    void ClearAssertions() { mAccounts.mAssertions.clear(); }

    // What the actor has done wrong so far.
    const std::vector<std::string>& Violations() const { return mAccounts.mViolations; }
    // Removes the hook, then disposes of all instances and destroys them. Returns the violations,
    // including what the actor hasn't given back.
    std::vector<std::string> Close();

    // Returns the actor's icon; null until the actor has had it loaded.
    NActor::IconRecord* Icon() const { return mAccounts.mIcon; }

    // Returns true while the host's code runs: inside an operation, and outside all callbacks.
    static bool IsInsideOperation();

    HostMode Mode() const { return mMode; }

    // For the operations. Returns null if actor isn't an instance of this host.
    Instance* FindInstance(const NActor::HostActor* actor) const
    {
        for (const auto& instance : mInstances) {
            if (reinterpret_cast<const NActor::HostActor*>(instance.get()) == actor) {
                return instance.get();
            }
        }
        return nullptr;
    }
    // The records that a plain host passes to all callbacks. A hostile host has none.
    const ContextRecords& SharedRecords() const { return *mSharedRecords; }

  private:
    friend StandInHost& Host();
    friend HostAccounts& Accounts();

    static inline StandInHost* sHost = nullptr;  // the one that exists

    HostMode mMode;
    std::unique_ptr<const ContextRecords> mSharedRecords;  // null in a hostile host
    NActor::ActorInfo mActorTemplate;                      // as GetActorInfo has filled it
    std::vector<Property> mInputs;                         // the fixed properties
    std::vector<Property> mOutputs;
    std::vector<std::unique_ptr<Instance>> mInstances;
    HostAccounts mAccounts;
};

}  // namespace NStandIn
