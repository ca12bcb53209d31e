// The host's table of operations, and what all operations share. Internal to the stand-in host.

#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>

#include "actor/host_interface.h"
#include "host_accounts.h"
#include "operation.h"
#include "stand_in_host.h"
#include "turn.h"

namespace NStandIn {

// The one host, and its accounts. There must be one.
inline StandInHost& Host()
{
    return *StandInHost::sHost;
}
inline HostAccounts& Accounts()
{
    return Host().mAccounts;
}

// What records and buffers hold before the actor writes to them.
inline constexpr unsigned char kGarbage = 0xA5;

template <typename T>
void FillWithGarbage(T& record)
{
    std::memset(static_cast<void*>(&record), kGarbage, sizeof record);
}

// Records a violation.
void Blame(const std::string& fault);
// Records a violation by a call of operation.
void Blame(const char* operation, const char* fault);
// Records a violation unless held.
inline void Demand(bool held, const char* fault)
{
    if (!held) Blame(fault);
}

// Returns the instance that the actor named in a call of operation. Null, after a violation, if
// there is none.
inline Instance* InstanceOf(const NActor::HostActor* actor, const char* operation)
{
    Instance* const instance = Host().FindInstance(actor);
    if (instance == nullptr) Blame(operation, "foreign mHostActor");
    return instance;
}
// As InstanceOf. An instance that has been disposed of is returned too, after a violation.
inline Instance* LivingInstanceOf(const NActor::HostActor* actor, const char* operation)
{
    Instance* const instance = InstanceOf(actor, operation);
    if (instance != nullptr && instance->Info().mActorDataPtr == nullptr) {
        Blame(operation, "the instance has been disposed of");
    }
    return instance;
}

// Every operation makes one first: takes the turn, writes the line of the log and asks the hook
// whether the operation fails.
//
// The hook may change everything that the operation works on. So an operation judges the actor's
// arguments before it makes its scope, and looks up what it works on after. It changes nothing
// before, since the hook may throw; the exception then leaves the constructor with the turn given
// back.
class OperationScope {
  public:
    // details: what follows the name in the log, each after a blank.
    template <typename... Details>
    explicit OperationScope(Operation operation, const Details&... details)
    {
        if (Accounts().mLogging) Log(operation, details...);
        mFails = Host().mHook && Host().mHook(operation);
    }

    bool Fails() const { return mFails; }

  private:
    template <typename... Details>
    static void Log(Operation operation, const Details&... details)
    {
        std::ostringstream line;
        line << kOperationNames[operation];
        ((line << ' ' << details), ...);
        Accounts().mLog.push_back(line.str());
    }

    Turn mTurn{Side::kHost};
    bool mFails = false;
};

// Fill the slots of one concern in the table; each is in the source of its name.
void AddPropertyOperations(NActor::HostCallbacks& ioTable);
void AddTextOperations(NActor::HostCallbacks& ioTable);

// A context for the actor, and the table of operations that it points to.
class ContextRecords {
  public:
    ContextRecords();

    NActor::HostContext* Context() const { return mContext.get(); }

  private:
    std::unique_ptr<NActor::HostCallbacks> mTable;
    std::unique_ptr<NActor::HostContext> mContext;
};

// The context of one call of the actor, which has the turn meanwhile. The context and the table of
// a hostile host are gone when the call has returned.
class CallContext {
  public:
    CallContext()
        : mOwnRecords(Host().Mode() == HostMode::kHostile ? std::make_unique<ContextRecords>()
                                                          : nullptr),
          mContext((mOwnRecords != nullptr ? *mOwnRecords : Host().SharedRecords()).Context())
    {
    }

    NActor::HostContext* Get() const { return mContext; }

  private:
    std::unique_ptr<const ContextRecords> mOwnRecords;  // null if the host is plain
    NActor::HostContext* mContext;
    // Last: the turn begins after the memory above is allocated, and ends before it is released.
    Turn mTurn{Side::kActor};
};

}  // namespace NStandIn
